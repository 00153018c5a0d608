// Internal variables against the system, and set, let and xset, end to end
// through ombc.exe.
#include "lang/environment_index.h"
#include "lang_lines.h"
#include "support/temp_folder.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <cwctype>
#include <string>
#include <vector>

using namespace lang_test;

namespace {

using Texts = std::vector<std::wstring>;

std::wstring OmbcPath()
{
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring path = self;
    return path.substr(0, path.find_last_of(L'\\') + 1) + L"ombc.exe";
}

std::wstring OneLine(const std::wstring& command)
{
    auto lines = Lines(RunOmbc(L"/C \"" + command + L"\"").Output);
    return lines.empty() ? L"<nothing>" : lines[0];
}

int Number(const std::wstring& text) { return std::stoi(text); }

// The system's own rendering of a date in its short format, when the format
// is one that the system and the shell write alike: runs of d, M and y with
// the date separator between them. Empty when the format is another one.
std::wstring SystemShortDate(const SYSTEMTIME& date)
{
    wchar_t format[80], separator[8];
    GetProfileStringW(L"intl", L"sShortDate", L"dd-mm-yyyy", format, 80);
    GetProfileStringW(L"intl", L"sDate", L"-", separator, 8);
    for (const wchar_t* p = format; *p; ++p) {
        wchar_t c = wchar_t(std::towlower(*p));
        bool element = c == L'd' || c == L'm' || c == L'y';
        if (!element && *p != separator[0]) return L"";
        if (c == L'm' && p[1] == *p && p[2] == *p) return L"";
    }
    wchar_t text[80];
    if (!GetDateFormatW(LOCALE_USER_DEFAULT, 0, &date, format, text, 80)) return L"";
    return text;
}

TEST(InternalVariables, DateAndTimeMatchTheSystem)
{
    auto lines = Typed("echo %date_year%;%date_month%;%date_day%;%date_dayofweek%\n"
                       "echo %date_today%\n"
                       "echo %date%\n"
                       "echo %time_hour%;%time_minute%;%time%\n"
                       "echo %date_format%\n"
                       "set date=mine\n"
                       "echo %date%\n");
    SYSTEMTIME now;
    GetLocalTime(&now);
    ASSERT_EQ(lines.size(), 6u);

    std::wstring ymd = std::to_wstring(now.wYear) + L";" + std::to_wstring(now.wMonth) + L";" +
                       std::to_wstring(now.wDay) + L";" + std::to_wstring(now.wDayOfWeek);
    EXPECT_EQ(lines[0], ymd);
    std::wstring shortDate = SystemShortDate(now);
    if (!shortDate.empty()) {
        EXPECT_EQ(lines[1], shortDate);
    }
    const wchar_t* days[] = {L"Sun", L"Mon", L"Tue", L"Wed", L"Thu", L"Fri", L"Sat"};
    EXPECT_EQ(lines[2], std::wstring(days[now.wDayOfWeek]) + L" " + lines[1]);

    // Hour and minute as the system says, give or take the minute that passed.
    std::wstring timeLine = lines[3];
    size_t bar1 = timeLine.find(L';'), bar2 = timeLine.find(L';', bar1 + 1);
    ASSERT_NE(bar2, std::wstring::npos);
    int minutes = Number(timeLine.substr(0, bar1)) * 60 + Number(timeLine.substr(bar1 + 1, bar2 - bar1 - 1));
    int systemMinutes = now.wHour * 60 + now.wMinute;
    EXPECT_LE((systemMinutes - minutes + 1440) % 1440, 1);
    std::wstring time = timeLine.substr(bar2 + 1);
    ASSERT_GE(time.size(), 7u);
    EXPECT_EQ(time.substr(0, time.find(L':')), timeLine.substr(0, bar1));
    EXPECT_EQ(time[time.size() - 3], L':');
    EXPECT_EQ(time[time.size() - 6], L':');

    wchar_t format[80];
    GetProfileStringW(L"intl", L"sShortDate", L"dd-mm-yyyy", format, 80);
    EXPECT_EQ(lines[4], format);
    // A variable of the same name hides the internal one.
    EXPECT_EQ(lines[5], L"mine");
}

TEST(InternalVariables, PlacesAndProgram)
{
    TempFolder folder;
    auto result = RunOmbcIn(folder.Path(), L"/C \"echo %cd%;%disk_path%;%disk_drive%\"");
    EXPECT_EQ(Lines(result.Output), (Texts{folder.Path() + L";" + folder.Path() + L";" + folder.Path().substr(0, 1)}));

    std::wstring program = OmbcPath();
    EXPECT_EQ(OneLine(L"echo %ombrel_filename%"), program);
    EXPECT_EQ(OneLine(L"echo %ombrel_path%"), program.substr(0, program.find_last_of(L'\\')));
    EXPECT_EQ(OneLine(L"echo %cmdcmdline%"), program + L" /C \"echo %cmdcmdline%\"");
    EXPECT_EQ(OneLine(L"echo %ombrel_version%;%cmdextversion%"), L"8.2;2");

    DWORD version = GetVersion();
    std::wstring windows = std::to_wstring(LOBYTE(LOWORD(version))) + L"." + std::to_wstring(HIBYTE(LOWORD(version)));
    EXPECT_EQ(OneLine(L"echo %windows_version%;%operating_system%"),
              windows + L";" + ((version & 0x80000000u) ? L"OTHER" : L"WinNT"));
}

TEST(InternalVariables, ErrorLevelAndRandomNumbers)
{
    auto lines = NonEmpty(Typed("echo %errorlevel%\n"
                                "tips x\n"
                                "echo %errorlevel%\n"
                                "rem keeps the level\n"
                                "echo %ERRORLEVEL%\n"
                                "verify\n"
                                "echo %errorlevel%\n"
                                "seed 7&echo %random%;%random_number%\n"
                                "seed 7&echo %random%;%random_number%\n"
                                "seed 8&echo %random%\n"));
    ASSERT_EQ(lines.size(), 8u);
    EXPECT_EQ(lines[0], L"0");
    EXPECT_EQ(lines[1], L"Invalid parameter");
    EXPECT_EQ(lines[2], L"1");
    EXPECT_EQ(lines[3], L"1");
    EXPECT_EQ(lines[4], L"0");
    // The same seed gives the same numbers; the scaled one stays in range.
    EXPECT_EQ(lines[5], lines[6]);
    size_t bar = lines[5].find(L';');
    int random = Number(lines[5].substr(0, bar)), scaled = Number(lines[5].substr(bar + 1));
    EXPECT_GE(random, 0);
    EXPECT_LE(random, 32767);
    EXPECT_GE(scaled, 0);
    EXPECT_LE(scaled, 65533);
    EXPECT_NE(lines[7], lines[5].substr(0, bar));
}

// Where a line stands in a listing, -1 when it is not there.
int IndexOf(const Texts& lines, const std::wstring& line)
{
    for (size_t i = 0; i < lines.size(); ++i)
        if (lines[i] == line) return int(i);
    return -1;
}

TEST(Set, SetsDeletesAndListsInTheEnvironmentsOrder)
{
    auto lines = Typed("set OMBT_Z=last one\n"
                       "set OMBT_A=first\n"
                       "set OMBT_B =blank in name\n"
                       "echo [%OMBT_Z%] [%OMBT_B%]\n"
                       "set OMBT_I=4\n"
                       "set OMBT_ARR.OMBT_I=four\n"
                       "echo %OMBT_ARR.4%\n"
                       "set OMBT_V=a=b  \n"
                       "echo [%OMBT_V%]\n"
                       "set /p OMBT_P=1\n"
                       "set\n"
                       "set OMBT_Z=\n"
                       "echo [%OMBT_Z%]\n"
                       "set OMBT_Z\n"
                       "set /x\n");
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[0], L"[last one] []");
    EXPECT_EQ(lines[1], L"four");
    EXPECT_EQ(lines[2], L"[a=b  ]");

    // The listing shows what was set, hides nothing else but names that begin
    // with "=", and keeps the order in which the system holds the variables.
    int z = IndexOf(lines, L"OMBT_Z=last one"), a = IndexOf(lines, L"OMBT_A=first");
    ASSERT_GE(z, 0);
    ASSERT_GE(a, 0);
    EXPECT_GE(IndexOf(lines, L"OMBT_B =blank in name"), 0);
    EXPECT_GE(IndexOf(lines, L"OMBT_ARR.4=four"), 0);
    // An unknown switch in front of the "=" is part of the name.
    EXPECT_GE(IndexOf(lines, L"/p OMBT_P=1"), 0);
    for (const auto& line : lines) EXPECT_NE(line.substr(0, 1), L"=");
    WriteEnvironment(L"OMBT_Z", L"1");
    WriteEnvironment(L"OMBT_A", L"1");
    SyncEnvironment();
    int systemZ = -1, systemA = -1, index = 0;
    wchar_t* block = GetEnvironmentStringsW();
    for (const wchar_t* p = block; *p; p += lstrlenW(p) + 1, ++index) {
        if (std::wstring(p) == L"OMBT_Z=1") systemZ = index;
        if (std::wstring(p) == L"OMBT_A=1") systemA = index;
    }
    FreeEnvironmentStringsW(block);
    WriteEnvironment(L"OMBT_Z", nullptr);
    WriteEnvironment(L"OMBT_A", nullptr);
    EXPECT_EQ(z < a, systemZ < systemA);

    Texts tail(lines.begin() + (IndexOf(lines, L"[]") >= 0 ? IndexOf(lines, L"[]") : 0), lines.end());
    EXPECT_EQ(NonEmpty(tail), (Texts{L"[]", L"Syntax Error", L"Invalid switch"}));

    // An empty subscript between two points names nothing and stays empty;
    // the parts behind it still count.
    EXPECT_EQ(NonEmpty(Typed("set OMBT_I=4\nset OMBT_ARR..OMBT_I=mid\necho [%OMBT_ARR.%] [%OMBT_ARR..4%]\n")),
              (Texts{L"[] [mid]"}));
}

TEST(Let, AssignsNumbersAndReportsItsOwnErrors)
{
    auto lines = NonEmpty(Typed("let OMBT_N=42\n"
                                "echo [%OMBT_N%]\n"
                                "set OMBT_I=5\n"
                                "let OMBT_ARR.OMBT_I=7\n"
                                "echo [%OMBT_ARR.5%]\n"
                                "let\n"
                                "let OMBT_N\n"
                                "echo [%OMBT_N%] %errorlevel%\n"));
    EXPECT_EQ(lines, (Texts{L"[42]", L"[7]", L"Invalid number of parameters", L"Syntax Error", L"[42] 0"}));
}

// The user's permanent environment as the registry holds it.
std::wstring PermanentValue(const wchar_t* name)
{
    wchar_t value[256] = {};
    DWORD size = sizeof(value);
    if (RegGetValueW(HKEY_CURRENT_USER, L"Environment", name, RRF_RT_REG_SZ, nullptr, value, &size) != ERROR_SUCCESS)
        return L"<none>";
    return value;
}

TEST(Xset, WritesThePermanentEnvironmentOnly)
{
    auto lines = NonEmpty(Typed("xset OMBT_X=perm value\n"
                                "echo [%OMBT_X%]\n"
                                "xset\n"));
    EXPECT_EQ(PermanentValue(L"OMBT_X"), L"perm value");
    ASSERT_FALSE(lines.empty());
    // The shell's own environment does not change.
    EXPECT_EQ(lines[0], L"[]");
    EXPECT_GE(IndexOf(lines, L"OMBT_X=perm value"), 1);

    lines = NonEmpty(Typed("xset OMBT_X=\nxset\nxset OMBT_X\n"));
    EXPECT_EQ(PermanentValue(L"OMBT_X"), L"<none>");
    EXPECT_EQ(IndexOf(lines, L"OMBT_X=perm value"), -1);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), L"Syntax Error");
}

} // namespace
