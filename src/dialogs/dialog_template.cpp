#include "dialogs/dialog_template.h"

namespace {

// Index of the item count in the header: style and extended style come first.
constexpr size_t kCountAt = 4;

} // namespace

DialogTemplate::DialogTemplate(const wchar_t* title, DWORD style, short width, short height)
{
    PutDword(style | DS_SETFONT);
    PutDword(0);
    words_.push_back(0); // item count, raised by Add
    words_.push_back(0);
    words_.push_back(0);
    words_.push_back(WORD(width));
    words_.push_back(WORD(height));
    words_.push_back(0); // no menu
    words_.push_back(0); // the standard dialog class
    PutText(title);
    words_.push_back(8);
    PutText(L"MS Shell Dlg");
}

void DialogTemplate::Add(WORD windowClass, const wchar_t* text, int id, DWORD style, short x, short y, short width,
                         short height)
{
    AlignDword();
    PutDword(style | WS_CHILD | WS_VISIBLE);
    PutDword(0);
    words_.push_back(WORD(x));
    words_.push_back(WORD(y));
    words_.push_back(WORD(width));
    words_.push_back(WORD(height));
    words_.push_back(WORD(id));
    words_.push_back(0xFFFF);
    words_.push_back(windowClass);
    PutText(text);
    words_.push_back(0); // no creation data
    ++words_[kCountAt];
}

void DialogTemplate::PutDword(DWORD value)
{
    words_.push_back(LOWORD(value));
    words_.push_back(HIWORD(value));
}

void DialogTemplate::PutText(const wchar_t* text)
{
    for (; *text; ++text) words_.push_back(WORD(*text));
    words_.push_back(0);
}

void DialogTemplate::AlignDword()
{
    if (words_.size() % 2) words_.push_back(0);
}
