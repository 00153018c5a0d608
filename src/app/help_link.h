// The platform help viewer, reached with its numbered commands.
#pragma once

enum HelpCommand { HelpShow = 1, HelpKeyword = 13, HelpContext = 15, HelpCloseAll = 18 };

// Opens the program's help file at a keyword (or its contents for HelpShow).
// Without a main window, as in the console program, there is no viewer.
void HelpLink(HelpCommand command, const wchar_t* keyword);
