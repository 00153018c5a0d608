// Files opened by the program their extension is associated with: the
// registry's open command for the file type becomes the stage's new line.
#pragma once

#include <memory>

// Rewrites the stage of CommandArgs into the associated open command for its
// word and parses it again. Returns the buffer that holds the new stage (the
// caller keeps it while the stage runs), or null when the word's extension
// has no association and the stage is left as it was.
std::unique_ptr<wchar_t[]> ApplyAssociation();
