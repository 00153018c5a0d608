/* The client side of the shell's request protocol, for external commands
 * (.EXC programs). An external command is started by the shell with the
 * shell's window handle, in decimal, as the last word of its command line;
 * it sends numbered requests to that window by WM_COPYDATA and gets each
 * answer back, at once, by a WM_COPYDATA to a window of its own.
 *
 * Usage: ExcOpen() once, then the calls below, then ExcClose(). One session
 * per process, used from the thread that opened it. Texts are UTF-16.
 * Plain C interface, so a program in any language that can call C links it.
 */
#ifndef EXC_CLIENT_H
#define EXC_CLIENT_H

#include <stddef.h>
#include <wchar.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The protocol version this library speaks. */
#define EXC_CLIENT_VERSION 0x500
/* A failed lookup: the first character of a text answer. */
#define EXC_FAILED_MARK 0xFFFF

/* Finds the shell's window (last command-line word, else the variable
 * "=hwnd"), makes the reply window and greets the shell. 0, or -1 when the
 * program was not started by the shell. */
int ExcOpen(void);
void ExcClose(void);

/* One raw request: code, payload of size bytes. The answer's bytes are
 * copied to reply (at most replySize). Returns the number of bytes the
 * answer carried, 0 for an empty answer, -1 when no answer came (requests
 * the shell does not answer, or a refusal). */
long ExcCall(unsigned code, const void* payload, size_t size, void* reply, size_t replySize);
/* Whether the last answer said the user pressed Ctrl-C. */
int ExcBreakSeen(void);

/* Text on the shell's screen; control characters and escape sequences act.
 * ExcWrite keeps only the characters the runtime calls printable;
 * ExcWriteCounted keeps every unit of the count (surrogate pairs included). */
int ExcWrite(const wchar_t* text);
int ExcWriteCounted(const wchar_t* text, size_t units);
int ExcWriteLine(const wchar_t* text);

/* The command's arguments: the count, and argument i (0 is the command
 * word) into buffer; 0, or -1 when i is out of range. */
int ExcArgCount(void);
int ExcArg(int i, wchar_t* buffer, size_t size);

/* Collects the files that match pattern (attributes: extra kinds to take,
 * 0x10 directories, 0x02 hidden ...), sorted by name; the count. */
int ExcWalk(const wchar_t* pattern, unsigned attributes);
/* Entry i of the last walk: its full path; 0, or -1 out of range. */
int ExcEntryPath(int i, wchar_t* buffer, size_t size);

/* The shell's variables: 0, or -1. An empty value deletes. */
int ExcGetVariable(const wchar_t* name, wchar_t* buffer, size_t size);
int ExcSetVariable(const wchar_t* name, const wchar_t* value);

/* Runs a command line in the shell; the ErrorLevel it left. */
int ExcRun(const wchar_t* line);

#ifdef __cplusplus
}
#endif

#endif
