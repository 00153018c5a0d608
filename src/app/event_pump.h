// The waits of a running command. There is one thread: a command that needs
// a key or a line runs a small loop of its own (through the host's
// NextInput) inside the message that started it, and returns when the user
// answered. Redirected input answers in place of the keyboard.
#pragma once

// 0 no read in progress; 1 a line is being read; 2 a single key is awaited.
// A nested read writes 0 back when it ends, it does not restore.
extern int InputMode;

// Any key, no echo; 0 when the program is ending. Ctrl-C sets BreakFlag.
wchar_t WaitKey();
// The pause command: 1 when the key was Ctrl-C (BreakFlag set), else 0.
int PauseKey();
// One key with echo: a line end shows as a new line and gives 10, a tab
// shows as a blank, Ctrl-Z ends the input and gives 0xFFFF.
wchar_t ReadKeyEcho();
// One key from the redirected input when there is one, else ReadKeyEcho;
// 0xFFFF at the end of input.
wchar_t ReadKey();
// One line of at most 78 units into buffer (room for 79): from the
// redirected input when there is one, else typed on the line editor. Null at
// the end of input, and on Ctrl-C (BreakFlag set, "^C" shown).
wchar_t* ReadLine(wchar_t* buffer);
// A typed line, the interactive half of ReadLine, cut to size - 1 units.
wchar_t* ReadTypedLine(wchar_t* buffer, int size);
// Y or N: 1 yes, 0 no, -1 Ctrl-C. Every other key is ignored.
int AskYesNo();
