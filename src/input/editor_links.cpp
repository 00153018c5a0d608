#include "input/editor_links.h"

namespace {

EditorLinks nothingAttached;

} // namespace

EditorLinks* Links = &nothingAttached;
