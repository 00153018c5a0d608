// Shortcuts (.LNK) are opened by the system shell's service, which knows how
// to resolve them; the shell does not wait, and the ErrorLevel is what the
// started process says at once.
#pragma once

void OpenShortcut(const wchar_t* path, const wchar_t* parameters);
