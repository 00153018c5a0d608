// chcp: the code page of every conversion between wide text and bytes.
#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <windows.h>

namespace {

struct DefaultPage {
    const wchar_t* Word;
    int Selector; // the value of ActiveCodePage that stands for it
    LCTYPE LocaleItem;
    const wchar_t* Note;
};

const DefaultPage kDefaults[] = {
    {L"win", 0, LOCALE_IDEFAULTANSICODEPAGE, L" (WIN Default)"},
    {L"dos", 1, LOCALE_IDEFAULTCODEPAGE, L" (DOS Default)"},
    {L"mac", 2, LOCALE_IDEFAULTMACCODEPAGE, L" (MAC Default)"},
};

// The system locale's code page of a kind; UTF-8 where the locale names none.
UINT DefaultNumber(const DefaultPage& page)
{
    wchar_t digits[8];
    if (!GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, page.LocaleItem, digits, 8)) return CP_UTF8;
    UINT number = UINT(wtoui64_ex(digits));
    return number > 2 ? number : CP_UTF8;
}

void ShowActivePage()
{
    UINT number = UINT(ActiveCodePage);
    const wchar_t* note = L"";
    for (const DefaultPage& page : kDefaults)
        if (page.Selector == ActiveCodePage) {
            number = DefaultNumber(page);
            note = page.Note;
        }
    UseItem(Item::Text);
    TheScreen.Write(L"Active code page: ");
    UseItem(Item::HighText);
    TheScreen.WriteULong(number);
    UseItem(Item::Text);
    TheScreen.Write(note);
    TheScreen.NewLine();
}

// Digits only, and a code page the platform can convert; else message 114.
void SelectNumber(const wchar_t* text)
{
    const wchar_t* end = text;
    int64_t number = lstrtoi64W(text, &end, 10);
    CPINFO info;
    if (end == text || *end || number < 0 || number > INT32_MAX || !GetCPInfo(UINT(number), &info)) {
        ReportId(114);
        return;
    }
    ActiveCodePage = int(number);
    for (const DefaultPage& page : kDefaults)
        if (DefaultNumber(page) == UINT(number)) {
            ActiveCodePage = page.Selector;
            return;
        }
}

} // namespace

void CmdChcp()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount > 1) {
        ReportId(1);
        return;
    }
    if (CommandArgs.ArgCount == 0) {
        ShowActivePage();
        return;
    }
    for (const DefaultPage& page : kDefaults)
        if (lstrcmpiW(CommandArgs.Args[0], page.Word) == 0) {
            ActiveCodePage = page.Selector;
            return;
        }
    SelectNumber(CommandArgs.Args[0]);
}
