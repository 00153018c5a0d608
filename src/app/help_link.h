// The help viewer: the platform's compiled-help viewer, reached with its
// numbered commands, on the program's help file beside the program.
#pragma once

#include <cstdint>

enum HelpCommand { HelpShow = 1, HelpKeyword = 13, HelpContext = 15, HelpCloseAll = 18 };

// Shows the contents, a keyword's page, or a numbered page; closes every help
// window. Without a main window (the console program), or without the help
// file or the viewer, nothing happens.
void HelpLink(HelpCommand command, const wchar_t* keyword = nullptr, uint32_t context = 0);
