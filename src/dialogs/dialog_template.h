// A dialog template built in memory: the header (style, size, title, font)
// followed by one item record per control, each starting on a 32-bit
// boundary. The program's dialogs are laid out in code, so no resource file
// has to keep the control ids in step with the code that uses them.
#pragma once

#include <windows.h>

#include <vector>

class DialogTemplate {
public:
    // The system classes, by their predefined atoms.
    enum : WORD { Button = 0x0080, Edit = 0x0081, Static = 0x0082, ListBox = 0x0083 };

    // Sizes in dialog units; the font is the shell dialog font at 8 points.
    DialogTemplate(const wchar_t* title, DWORD style, short width, short height);

    // One control; style gets WS_CHILD and WS_VISIBLE added.
    void Add(WORD windowClass, const wchar_t* text, int id, DWORD style, short x, short y, short width, short height);
    const DLGTEMPLATE* Get() const { return reinterpret_cast<const DLGTEMPLATE*>(words_.data()); }

private:
    void PutDword(DWORD value);
    void PutText(const wchar_t* text);
    void AlignDword();

    // Words keep the 16-bit fields in place; the allocation itself is aligned
    // for any type, so the header starts on a 32-bit boundary.
    std::vector<WORD> words_;
};
