// Expansion of statements and batch lines, in process, with variables that
// the tests set themselves and a stand-in for the running batch program.
#include "lang/environment_index.h"
#include "app/toolkit/omdib.h"
#include "lang/expand.h"
#include "lang/short_date.h"
#include "lang/variables.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Sets variables for one test and removes them afterwards.
class ScopedVariables {
public:
    ScopedVariables(std::initializer_list<std::pair<const wchar_t*, std::wstring>> values)
    {
        for (const auto& [name, value] : values) {
            WriteEnvironment(name, value.c_str());
            names_.push_back(name);
        }
    }
    ~ScopedVariables()
    {
        for (const auto& name : names_) WriteEnvironment(name.c_str(), nullptr);
    }

private:
    std::vector<std::wstring> names_;
};

std::wstring Expand(const std::wstring& line)
{
    std::vector<wchar_t> out(kLineMax);
    ExpandLine(line.c_str(), out.data(), kLineMax);
    return out.data();
}

class FakeBatch : public BatchParameters {
public:
    std::vector<std::wstring> Slots; // empty text: an empty slot
    int Count = 0;
    std::wstring TailText;

    const wchar_t* Parameter(int n) const override
    {
        if (n >= int(Slots.size()) || Slots[size_t(n)].empty()) return nullptr;
        return Slots[size_t(n)].c_str();
    }
    int ParameterCount() const override { return Count; }
    const wchar_t* ParameterTail() const override { return TailText.c_str(); }
};

std::wstring ExpandBatch(const FakeBatch& batch, const std::wstring& line)
{
    std::vector<wchar_t> out(kLineMax);
    ExpandBatchLine(batch, line.c_str(), out.data(), kLineMax);
    return out.data();
}

std::wstring CurrentDirectory()
{
    wchar_t path[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, path);
    return path;
}

TEST(Expand, VariablesAtThePrompt)
{
    ScopedVariables vars{{L"OMBT_H", L"hello"}, {L"OMBT_CMDEXT", L"x"}};
    WriteEnvironment(L"OMBT_UNSET", nullptr);
    EXPECT_EQ(Expand(L"echo [%OMBT_UNSET%] [%OMBT_H%] %OMBT_h%"), L"echo [] [hello] hello");
    // A colon form on an empty value stays as it was written.
    EXPECT_EQ(Expand(L"[%OMBT_UNSET:x=y%]"), L"[%OMBT_UNSET:x=y%]");
    // %% and a "%" with a blank before the next one stay; so does an escaped one.
    EXPECT_EQ(Expand(L"100%% 50% off %OMBT_H%"), L"100%% 50% off hello");
    EXPECT_EQ(Expand(L"^%OMBT_H^% ^"), L"^%OMBT_H^% ^");
    EXPECT_EQ(Expand(L"a%OMBT_H%%OMBT_H%b"), L"ahellohellob");
    EXPECT_EQ(Expand(L"end%"), L"end%");
    EXPECT_EQ(Expand(L"%"), L"%");
    EXPECT_EQ(Expand(L"%%%OMBT_H%"), L"%%hello");
    // Variables expand inside quotes; quotes only protect a brace.
    EXPECT_EQ(Expand(L"\"%OMBT_H%\" {%OMBT_H% (%OMBT_H%)} \"{%OMBT_H%}\""),
              L"\"hello\" {%OMBT_H% (%OMBT_H%)} \"{hello}\"");
    EXPECT_EQ(Expand(L"{ %OMBT_H% "), L"{ %OMBT_H% ");
}

TEST(Expand, SubstringsAndReplacement)
{
    ScopedVariables vars{{L"OMBT_H", L"hello"}};
    struct Case {
        const wchar_t* form;
        const wchar_t* out;
    } cases[] = {
        {L"~-2", L"lo"},      {L"~1,2", L"el"},     {L"~1,-1", L"ell"},  {L"~0", L"hello"},
        {L"~-10", L"hello"},  {L"~10", L""},        {L"~2,100", L"llo"}, {L"~-3,-5", L""},
        {L"~1,0", L""},       {L"~+1,+2", L"el"},   {L"~4,-4", L""},     {L"L=_", L"he__o"},
        {L"l=", L"heo"},      {L"LL=[ll]", L"he[ll]o"}, {L"o=O=0", L"hellO=0"},
        {L"~99999999999999999999", L""},           {L"~-99999999999999999999,2", L"he"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Expand(std::wstring(L"%OMBT_H:") + c.form + L"%"), c.out) << c.form;
    // Malformed forms, an empty search and trailing junk leave the text alone.
    for (const wchar_t* form : {L"~1x", L"~", L"~1,", L"~1,2x", L"", L"x", L"=y", L"~a"}) {
        std::wstring reference = std::wstring(L"%OMBT_H:") + form + L"%";
        EXPECT_EQ(Expand(reference), reference) << form;
    }
    // The last colon separates the form; a whole name that is set wins.
    ScopedVariables colon{{L"OMBT_C:~1", L"whole"}, {L"OMBT_C:X", L"abc"}};
    EXPECT_EQ(Expand(L"%OMBT_C:~1%"), L"whole");
    EXPECT_EQ(Expand(L"%OMBT_C:X:~1%"), L"bc");
}

TEST(Expand, ReplacementIsCutAt4095Units)
{
    ScopedVariables vars{{L"OMBT_A", std::wstring(3000, L'a')}};
    std::wstring value = Expand(L"%OMBT_A:a=bb%");
    EXPECT_EQ(value, std::wstring(4095, L'b'));
}

TEST(Expand, ArraysThroughDottedNames)
{
    ScopedVariables vars{{L"OMBT_I", L"2"}, {L"OMBT_ARR.2", L"x"}, {L"OMBT_ARR.2.3", L"deep"},
                         {L"OMBT_J", L"3"},  {L"OMBT_PT.", L"pt"}};
    EXPECT_EQ(Expand(L"%OMBT_ARR.OMBT_I% %OMBT_ARR.2% %OMBT_ARR.OMBT_I.OMBT_J%"), L"x x deep");
    EXPECT_EQ(Expand(L"%OMBT_ARR.OMBT_I:~0,1%"), L"x");
    wchar_t name[kValueMax];
    EXPECT_STREQ(ResolveSubscripts(L"a.OMBT_I.7.OMBT_NONE", name, kValueMax), L"a.2.7.");
    // An empty part stands between its points; trailing points are one.
    EXPECT_STREQ(ResolveSubscripts(L"a..OMBT_I", name, kValueMax), L"a..2");
    EXPECT_STREQ(ResolveSubscripts(L"a...7", name, kValueMax), L"a...7");
    EXPECT_STREQ(ResolveSubscripts(L"a.OMBT_I..", name, kValueMax), L"a.2.");
    EXPECT_STREQ(ResolveSubscripts(L"a..", name, kValueMax), L"a.");
    EXPECT_STREQ(ResolveSubscripts(L"OMBT_PT.", name, kValueMax), L"OMBT_PT.");
    EXPECT_EQ(Expand(L"%OMBT_PT.%"), L"pt");
    // The whole name is looked up first, subscripts resolved: "OMBT_PT.x:y"
    // names OMBT_PT. while no variable is called "x:y".
    EXPECT_EQ(Expand(L"%OMBT_PT.x:~1%"), L"pt");
    // A name longer than the buffer is cut, never overrun.
    wchar_t small[8];
    small[7] = L'#';
    ResolveSubscripts(L"abcdefghijk.OMBT_I", small, 7);
    EXPECT_STREQ(small, L"abcdef");
}

TEST(Expand, EnvironmentHidesInternalVariables)
{
    WriteEnvironment(L"cmdextversion", nullptr);
    EXPECT_EQ(Expand(L"%CmdExtVersion%"), L"2");
    ScopedVariables vars{{L"cmdextversion", L"9"}};
    EXPECT_EQ(Expand(L"%cmdextversion%"), L"9");
    EXPECT_EQ(Expand(L"%cd%"), CurrentDirectory());
    EXPECT_EQ(Expand(L"%ombt_no_such_internal%"), L"");
}

TEST(Expand, LongLinesAndNamesAreCutSilently)
{
    ScopedVariables vars{{L"OMBT_L", std::wstring(100, L'v')}};
    std::wstring line = L"echo ";
    while (line.size() + 8 <= 4095) line += L"%OMBT_L%";
    std::vector<wchar_t> out(kLineMax + 16, L'#');
    ExpandLine(line.c_str(), out.data(), kLineMax);
    EXPECT_EQ(lstrlenW(out.data()), 4095);
    EXPECT_EQ(out[kLineMax], L'#');

    // A reference with a name of 10,000 characters looks up nothing and
    // leaves the text as it was.
    std::wstring longName(10000, L'n');
    EXPECT_EQ(Expand(L"[%" + longName.substr(0, 4000) + L"%]"), L"[]");
    wchar_t value[kValueMax];
    EXPECT_STREQ(LookupVariable(longName.c_str(), value), L"");
    std::wstring colonForm = longName + L":~1%";
    EXPECT_EQ(LookupVariable(colonForm.c_str(), value), nullptr);
}

TEST(Expand, BatchLines)
{
    ScopedVariables vars{{L"OMBT_H", L"hello"}};
    FakeBatch batch;
    batch.Slots = {L"b.bat", L"\"a b\"", L"x"};
    batch.Count = 2;
    batch.TailText = L"\"a b\" x";
    EXPECT_EQ(ExpandBatch(batch, L"%0|%1|%2|%3|%#|%*"), L"b.bat|\"a b\"|x||2|\"a b\" x");
    EXPECT_EQ(ExpandBatch(batch, L"%10 %~1 %~3."), L"\"a b\"0 a b .");
    // A lone "%" vanishes in a batch line, also at the very end; %% is one "%".
    EXPECT_EQ(ExpandBatch(batch, L"echo 100%x 50%% %OMBT_H% a% b end%"), L"echo 100x 50% hello a b end");
    EXPECT_EQ(ExpandBatch(batch, L"[%OMBT_UNSET%] [%OMBT_UNSET:~1%] %OMBT_H:~1,3%"), L"[] [%OMBT_UNSET:~1%] ell");
    // "^" is nothing special here.
    EXPECT_EQ(ExpandBatch(batch, L"^%1^%OMBT_H%"), L"^\"a b\"^hello");
    // Inside braces only the batch forms are replaced.
    EXPECT_EQ(ExpandBatch(batch, L"for %%i in (1) do { echo %%i %1 %# %OMBT_H% (%2) } %OMBT_H%"),
              L"for %i in (1) do { echo %i \"a b\" 2 %OMBT_H% (x) } hello");
    EXPECT_EQ(ExpandBatch(batch, L"\"{%OMBT_H%}\" {%OMBT_H%"), L"\"{hello}\" {%OMBT_H%");
    // The quoted parameter with a doubled quote loses its outer quotes only.
    batch.Slots[1] = L"\"say \"\"hi\"\"\"";
    EXPECT_EQ(ExpandBatch(batch, L"%~1"), L"say \"hi\"");
}

TEST(Expand, TildeForms)
{
    TempFolder folder;
    folder.WriteBytes(L"data.txt", std::string(1234, 'x'));
    CreateDirectoryW((folder / L"sub").c_str(), nullptr);
    folder.WriteBytes(L"sub\\found.cfg", "y");
    std::wstring file = folder / L"data.txt";

    FakeBatch batch;
    batch.Slots = {L"b.bat", L"\"" + file + L"\"", L"found.cfg", L"", L"missing.cfg", folder / L"sub"};
    batch.Count = 5;
    std::wstring cwd = CurrentDirectory();
    EXPECT_EQ(ExpandBatch(batch, L"%~f1"), file);
    EXPECT_EQ(ExpandBatch(batch, L"%~nx1|%~n1|%~x1"), L"data.txt|data|.txt");
    EXPECT_EQ(ExpandBatch(batch, L"%~dp1"), folder.Path() + L"\\");
    EXPECT_EQ(ExpandBatch(batch, L"%~d3"), cwd.substr(0, 2));
    // f cancels the parts: the full path stands.
    EXPECT_EQ(ExpandBatch(batch, L"%~fn1"), file);
    EXPECT_EQ(ExpandBatch(batch, L"%~z1"), L"1,234 ");
    EXPECT_EQ(ExpandBatch(batch, L"%~zf1"), L"1,234 " + file);
    EXPECT_EQ(ExpandBatch(batch, L"[%~z4]"), L"[]");
    // s gives the short form of the same file; the parts apply to it.
    std::wstring shortPath = ExpandBatch(batch, L"%~s1");
    wchar_t longPath[MAX_PATH] = {};
    GetLongPathNameW(shortPath.c_str(), longPath, MAX_PATH);
    EXPECT_EQ(lstrcmpiW(longPath, file.c_str()), 0) << shortPath;
    EXPECT_EQ(ExpandBatch(batch, L"%~sd1"), shortPath.substr(0, 2));
    // No modifier and no selector: the form vanishes.
    EXPECT_EQ(ExpandBatch(batch, L"[%~]"), L"[]");

    // $name: searches the directories of a variable for the file part.
    ScopedVariables vars{{L"OMBT_DIRS", folder.Path() + L";" + folder.Path() + L"\\sub"}};
    EXPECT_EQ(ExpandBatch(batch, L"%~$OMBT_DIRS:2"), folder.Path() + L"\\sub\\found.cfg");
    EXPECT_EQ(ExpandBatch(batch, L"%~n$OMBT_DIRS:2"), L"found");
    EXPECT_EQ(ExpandBatch(batch, L"[%~$OMBT_DIRS:4]"), L"[]");
    // A $ without its colon counts for nothing: no modifier, the form vanishes.
    EXPECT_EQ(ExpandBatch(batch, L"[%~$OMBT 2]"), L"[OMBT 2]");

    std::wstring directoryFacts = ExpandBatch(batch, L"%~a5");
    ASSERT_EQ(directoryFacts.size(), 9u);
    EXPECT_EQ(directoryFacts[3], L'D');
    EXPECT_EQ(directoryFacts[8], L' ');
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
    std::wstring fileFacts = ExpandBatch(batch, L"%~a1");
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    ASSERT_EQ(fileFacts.size(), 9u);
    EXPECT_EQ(fileFacts[0], L'R');
    EXPECT_EQ(fileFacts[3], L'-');

    // The time stamp: the local date as listings show it, then "h:mm".
    SYSTEMTIME stamp{2001, 2, 0, 3, 4, 5, 0, 0};
    FILETIME local, utc;
    SystemTimeToFileTime(&stamp, &local);
    LocalFileTimeToFileTime(&local, &utc);
    {
        HANDLE h = CreateFileW(file.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        ASSERT_NE(h, INVALID_HANDLE_VALUE);
        SetFileTime(h, nullptr, nullptr, &utc);
        CloseHandle(h);
    }
    SYSTEMTIME shown{};
    FileTimeToSystemTime(&local, &shown);
    wchar_t date[80];
    FormatShortDate(shown, DatePadded, date, 80);
    EXPECT_EQ(ExpandBatch(batch, L"%~t1"), std::wstring(date) + L"  4:05 ");
}

} // namespace
