#include "services/result_list.h"

#include "app/toolkit/omdib.h"
#include "lang/variables.h"

void SetResultVariable(const wchar_t* name, const std::wstring& text) { SetVariable(name, text.c_str()); }

void NameList::Add(const wchar_t* name)
{
    size_t length = size_t(lstrlenW(name));
    size_t comma = text_.empty() ? 0 : 1;
    if (text_.size() + comma + length >= size_t(kLineMax)) return;
    if (comma) text_ += L',';
    text_ += name;
}
