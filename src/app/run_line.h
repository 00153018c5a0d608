// The way of one top-level line: from the submitted-line buffer through the
// interpreter and back to a fresh prompt.
#pragma once

// Greys or enables the Close item of the main window's system menu; the
// window cannot be closed under a running command or before start-up is out.
void EnableClose(bool enable);
enum class PromptAfter { Yes, No };
// Runs the editor's submitted line with the Close item greyed and
// CommandRunning set, then shows the prompt unless the program is about to
// close (a /C run).
void RunTopLevelLine(PromptAfter prompt = PromptAfter::Yes);
// The normal way back to the command line.
void ShowPrompt();
// The same for the next line of an unfinished group: "More? ".
void ShowMorePrompt();
// A batch line as echo shows it: the prompt, the line, a line end.
void EchoBatchLine(const wchar_t* text);
