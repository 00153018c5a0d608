#include "input/editor.h"


void CommandLineEditor::TypeLine(const wchar_t* text, bool submit)
{
    if (submit) CopyCutW(Submitted, text, kLineMax);
}
