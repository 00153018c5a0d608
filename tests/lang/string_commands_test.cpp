// The string commands end to end: each case runs in one batch program, with
// its result variable set to "-" first, so "[-]" shows an untouched variable
// and "[]" a deleted one.
#include "lang_lines.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace {

using lang_test::Lines;

struct Case {
    std::wstring Line; // one line of the batch program, or several
    std::wstring Variable;
    std::wstring Expected;
};

std::string Utf8(const std::wstring& text)
{
    int bytes = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), int(text.size()), nullptr, 0, nullptr, nullptr);
    std::string out(size_t(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), int(text.size()), out.data(), bytes, nullptr, nullptr);
    return out;
}

// Runs every case in one batch program.
void ExpectCases(const std::vector<Case>& cases)
{
    std::wstring batch = L"@echo off\r\n";
    for (const Case& c : cases)
        batch += L"set " + c.Variable + L"=-\r\n" + c.Line + L"\r\necho [%" + c.Variable + L"%]\r\n";
    TempFolder folder;
    folder.WriteBytes(L"cases.bat", "\xEF\xBB\xBF" + Utf8(batch));
    std::vector<std::wstring> lines = Lines(RunOmbcIn(folder.Path(), L"/C cases.bat").Output);
    ASSERT_EQ(lines.size(), cases.size()) << JoinLines(RunOmbcIn(folder.Path(), L"/C cases.bat").Output);
    for (size_t i = 0; i < cases.size(); ++i)
        EXPECT_EQ(lines[i], L"[" + cases[i].Expected + L"]") << cases[i].Line;
}

// U+1F600, a character outside the basic plane: one character, two units.
#define SMILE L"\U0001F600"

TEST(StringCommands, WholeTextCommands)
{
    ExpectCases({
        {L"strsize", L"STRSIZE", L"0"},
        {L"strsize  ab", L"STRSIZE", L"3"}, // the second blank belongs to the text
        {L"strsize \"a b\"", L"STRSIZE", L"5"},
        {L"strsize h\u00E9llo", L"STRSIZE", L"5"},
        {L"strsize a" SMILE L"b", L"STRSIZE", L"3"},
        {L"strsize e\u0301", L"STRSIZE", L"1"}, // a letter with its combining mark
        {L"upper abc D\u00E9f", L"UPPER", L"ABC D\u00C9F"},
        {L"lower ABC D\u00C9F", L"LOWER", L"abc d\u00E9f"},
        {L"upper", L"UPPER", L""},
        {L"strrev ab" SMILE L"c", L"STRREV", L"c" SMILE L"ba"},
        {L"strrev  ab", L"STRREV", L"ba "},
        {L"strtrim   a b \t", L"STRTRIM", L"a b"},
        {L"strtrim    ", L"STRTRIM", L""},
        {L"comma 1234567x", L"COMMA", L"1,234,567"},
        {L"comma   42", L"COMMA", L"42"},
        {L"comma abc", L"COMMA", L""},
        {L"parse a.b c", L"PARSEA", L"a"},
        {L"parse a.b c", L"PARSEB", L"b c"},
        {L"parse a\\b", L"PARSEB", L"b"},
        {L"parse   word   ", L"PARSEA", L"word"},
        {L"parse   word   ", L"PARSEB", L""},
        {L"parse x:   y  ", L"PARSEB", L"y"},
        {L"strfind b abcb", L"STRFIND", L"2"},
        {L"strrfind b abcb", L"STRRFIND", L"4"},
        {L"strfind x abc", L"STRFIND", L"0"},
        {L"strfind", L"STRFIND", L"0"},
        {L"strrfind", L"STRRFIND", L"0"},
        {L"strfind \"a b\" xa b", L"STRFIND", L"2"},
        {L"strfind " SMILE L" a" SMILE SMILE, L"STRFIND", L"2"},
        {L"strrfind " SMILE L" a" SMILE SMILE, L"STRRFIND", L"3"},
        {L"strfind b  b", L"STRFIND", L"2"}, // blanks behind the operand belong to the text
        {L"strrep a xx banana", L"STRREP", L"bxxnxxnxx"},
        {L"strrep a", L"STRREP", L""},
        {L"strrep \"\" x abc", L"STRREP", L""},
        {L"strrep \" \" _ a b c", L"STRREP", L"a_b_c"},
        {L"strrep aa a aaaa", L"STRREP", L"aa"}, // no rescan of the replacement
    });
}

TEST(StringCommands, PartsOfATextByCharacter)
{
    ExpectCases({
        {L"strsplit 3 abcdef", L"STRSPLITA", L"ab"},
        {L"strsplit 3 abcdef", L"STRSPLITB", L"cdef"},
        {L"strsplit -2 abcdef", L"STRSPLITA", L"abcd"},
        {L"strsplit -2 abcdef", L"STRSPLITB", L"ef"},
        {L"strsplit 0 abc", L"STRSPLITA", L""},
        {L"strsplit 0 abc", L"STRSPLITB", L""},
        {L"strsplit 1 abc", L"STRSPLITA", L""},
        {L"strsplit 1 abc", L"STRSPLITB", L"abc"},
        {L"strsplit 99999999999 abc", L"STRSPLITA", L"abc"},
        {L"strsplit 99999999999 abc", L"STRSPLITB", L""},
        {L"strsplit -99999999999 abc", L"STRSPLITB", L"abc"},
        {L"strsplit 0x2 abc", L"STRSPLITB", L"bc"},
        {L"strsplit 2 " SMILE L"x", L"STRSPLITA", SMILE},
        {L"substr 2 3 abcdef", L"SUBSTR", L"bcd"},
        {L"substr -2 5 abcdef", L"SUBSTR", L"ef"},
        {L"substr 0 3 abc", L"SUBSTR", L""},
        {L"substr 2 0 abc", L"SUBSTR", L""},
        {L"substr 2 -1 abc", L"SUBSTR", L""},
        {L"substr 99999999999 3 abc", L"SUBSTR", L""},
        {L"substr -99999999999 3 abc", L"SUBSTR", L""},
        {L"substr 1 99999999999 abc", L"SUBSTR", L"abc"},
        {L"substr -5 3 abc", L"SUBSTR", L"a"},
        {L"substr 2 1 a" SMILE L"b", L"SUBSTR", SMILE},
        {L"substr 1 3  ab", L"SUBSTR", L" ab"},
        {L"strpad right 5 ab", L"STRPAD", L"   ab"},
        {L"strpad center 5 ab", L"STRPAD", L" ab  "},
        {L"strpad CENTRE 4 ab", L"STRPAD", L" ab "},
        {L"strpad left 5 ab", L"STRPAD", L"ab   "},
        {L"strpad left 3 abcd", L"STRPAD", L"abcd"},
        {L"strpad right -3 ab", L"STRPAD", L"ab"},
        {L"strpad middle 5 ab", L"STRPAD", L"-"},
        {L"strpad right 3 " SMILE, L"STRPAD", L"  " SMILE},
        {L"strfold ligatures \uFB01", L"STRFOLD", L"fi"},
        {L"strfold c e\u0301", L"STRFOLD", L"\u00E9"},
        {L"strfold d \u00E9", L"STRFOLD", L"e\u0301"},
        {L"strfold kd x", L"STRFOLD", L"-"}, // no flag: the platform refuses
        {L"strfold other x", L"STRFOLD", L"-"},
        {L"strfold digits", L"STRFOLD", L""},
        {L"charnext 0 abc", L"CHARNEXT", L"a"},
        {L"charnext 1 a" SMILE L"b", L"CHARNEXT", SMILE},
        {L"charnext 3 abc", L"CHARNEXT", L""},
        {L"charnext -1 abc", L"CHARNEXT", L""},
        {L"charprev 3 a" SMILE L"b", L"CHARPREV", L"b"},
        {L"charprev 2 a" SMILE L"b", L"CHARPREV", SMILE},
        {L"charprev 0 abc", L"CHARPREV", L""},
        {L"charprev 99999999999 abc", L"CHARPREV", L""},
    });
}

// The day-month-year short format for one test, whatever the system's is.
class DayMonthYear {
public:
    DayMonthYear()
    {
        GetProfileStringW(L"intl", L"sShortDate", L"", format_, 80);
        GetProfileStringW(L"intl", L"sDate", L"", separator_, 8);
        WriteProfileStringW(L"intl", L"sShortDate", L"dd-MM-yyyy");
        WriteProfileStringW(L"intl", L"sDate", L"-");
    }
    ~DayMonthYear()
    {
        WriteProfileStringW(L"intl", L"sShortDate", format_[0] ? format_ : nullptr);
        WriteProfileStringW(L"intl", L"sDate", separator_[0] ? separator_ : nullptr);
    }

private:
    wchar_t format_[80];
    wchar_t separator_[8];
};

TEST(StringCommands, DateSerialsRoundTrip)
{
    DayMonthYear format;
    std::vector<Case> cases = {
        {L"date2ser 01-03-2000", L"DATE2SER", L"730486"},
        {L"date2ser 15-Jun-2024", L"DATE2SER", L"739358"},
        {L"date2ser \"15/06/24\"", L"DATE2SER", L"739358"}, // quoted, or the slashes would be switches
        {L"date2ser \"1.1.80\"", L"DATE2SER", L"723121"},
        {L"date2ser nonsense", L"DATE2SER", L""},
        {L"date2ser 31-13-2000", L"DATE2SER", L""},
        {L"ser2date 0", L"SER2DATE", L""},
        {L"ser2date 99999999", L"SER2DATE", L""},
        {L"ser2date 739358", L"SER2DATE", L"15-06-2024"},
    };
    // Leap days, century years, the ends of the range: each date comes back.
    for (const wchar_t* date : {L"01-01-1980", L"28-02-1999", L"29-02-2000", L"01-03-2000", L"31-12-2000",
                                L"28-02-2100", L"01-03-2100", L"29-02-2400", L"31-12-9999", L"01-01-1601"})
        cases.push_back({std::wstring(L"date2ser ") + date + L"\r\nser2date %DATE2SER%", L"SER2DATE", date});
    ExpectCases(cases);

    std::vector<std::wstring> errors = lang_test::NonEmpty(
        lang_test::Typed("date2ser\ndate2ser a b\nser2date\nser2date /x 5\nser2date 1 2\n"));
    EXPECT_EQ(errors, (std::vector<std::wstring>{L"Invalid number of parameters", L"Invalid number of parameters",
                                                 L"Invalid number of parameters", L"Invalid switch",
                                                 L"Invalid number of parameters"}));
}

TEST(StringCommands, LongTextsAndBadInputsGiveAResultOrNothing)
{
    std::string x(4000, 'x');
    std::string lines = "set L=" + x + "\nstrrep x yy %L%\nstrsize %STRREP%\necho %STRSIZE%\n" +
                        "strrev %L%%L%\nupper %L%\ncomma 1" + std::string(4000, '9') + "\nstrpad left 99999 a\n" +
                        "substr -4095 4095 %L%\nstrfold digits %L%\ncharnext 4094 %L%\necho [%CHARNEXT%] ok\n";
    std::vector<std::wstring> out = lang_test::Typed(lines);
    ASSERT_EQ(out.size(), 2u);
    EXPECT_EQ(out[0], L"4087"); // the line was cut to 4095 units, its text to 4087
    EXPECT_EQ(out[1], L"[] ok");
}

} // namespace
