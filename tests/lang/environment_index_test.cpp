// Variables the shell sets are read through its index at once, and after a
// sync the process environment, which children inherit and set lists, is
// exactly what writing each change through to the platform would have made of
// it: the same names, spellings, values and order.
#include "lang/environment_index.h"
#include "lang/environment_list.h"
#include "lang/variables.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// The strings of the process block that begin with prefix, with the prefix
// cut off, in the block's order.
std::vector<std::wstring> ProcessStrings(const std::wstring& prefix)
{
    std::vector<std::wstring> strings;
    wchar_t* block = GetEnvironmentStringsW();
    for (const wchar_t* p = block; *p; p += lstrlenW(p) + 1)
        if (_wcsnicmp(p, prefix.c_str(), prefix.size()) == 0) strings.emplace_back(p + prefix.size());
    FreeEnvironmentStringsW(block);
    return strings;
}

TEST(EnvironmentIndex, ASyncLeavesTheBlockAsWritingThroughWould)
{
    struct Step {
        const wchar_t* Name;  // behind the prefix
        const wchar_t* Value; // null deletes
        bool Sync;            // a sync after this step
    };
    // Each run of steps is done twice: through the index under one prefix,
    // and straight to the platform under another; the two families must end
    // in the same order. "Old" exists before the first step.
    const Step steps[] = {
        {L"ZULU", L"1", false},    {L"alpha", L"2", false},  {L"MIKE", L"a=b", false}, {L"Alpha", L"x", false},
        {L"ZULU", nullptr, false}, {L"YANK", L"y", false},   {L"ZULU", L"back", false}, {L"mike", nullptr, false},
        {L"Old", L"new", false},   {L"OLD", L"newer", true}, {L"alpha", nullptr, false}, {L"ALPHA", L"again", false},
        {L"KILO", L"k", false},    {L"kilo", nullptr, false}, {L"Kilo", L"k2", false},   {L"ZULU", L"z", true},
        // Letters beyond ASCII compare case-blind too.
        {L"\u00E4PFEL", L"1", false}, {L"\u00C4PFEL", L"2", false}, {L"\u03C3IGMA", L"s", false},
        {L"\u03A3IGMA", nullptr, false}, {L"\u00C4pfel", L"3", true},
    };
    const std::wstring lazy = L"OMBI_LAZY_", direct = L"OMBI_DIRECT_";
    ASSERT_TRUE(SetVariable((lazy + L"OLD").c_str(), L"0"));
    SyncEnvironment();
    SetEnvironmentVariableW((direct + L"OLD").c_str(), L"0");
    for (const Step& step : steps) {
        std::wstring name = step.Name;
        ASSERT_TRUE(SetVariable((lazy + name).c_str(), step.Value)) << name;
        SetEnvironmentVariableW((direct + name).c_str(), step.Value);
        // The shell's own reads see the change before any sync.
        const std::wstring* read = FindEnvironment((lazy + name).c_str());
        EXPECT_EQ(read ? *read : L"<unset>", step.Value ? step.Value : L"<unset>") << name;
        if (!step.Sync) continue;
        SyncEnvironment();
        EXPECT_EQ(ProcessStrings(lazy), ProcessStrings(direct)) << name;
        // set lists the process block as it stands.
        std::vector<std::wstring> listed;
        for (const EnvironmentEntry& entry : ListEnvironment())
            if (entry.Name.rfind(lazy, 0) == 0) listed.push_back(entry.Name.substr(lazy.size()) + L"=" + entry.Value);
        EXPECT_EQ(listed, ProcessStrings(lazy)) << name;
    }
    // Names and values the platform refuses fail at once, and change nothing.
    std::wstring tooLong(32768, L'v');
    for (const wchar_t* refused : {L"", L"OMBI_A=B"}) EXPECT_FALSE(WriteEnvironment(refused, L"1")) << refused;
    EXPECT_FALSE(WriteEnvironment(L"OMBI_LONG", tooLong.c_str()));
    EXPECT_EQ(FindEnvironment(L"OMBI_LONG"), nullptr);
    tooLong.pop_back();
    EXPECT_TRUE(WriteEnvironment(L"OMBI_LONG", tooLong.c_str()));
    EXPECT_TRUE(WriteEnvironment(L"OMBI_LONG", nullptr));
    // Deleting what is not there is no failure.
    EXPECT_TRUE(WriteEnvironment(L"OMBI_NEVER_SET", nullptr));
    // Hidden names are read and written where they live.
    ASSERT_TRUE(WriteEnvironment(L"=OMBI_HIDDEN", L"h"));
    ASSERT_NE(FindEnvironment(L"=OMBI_HIDDEN"), nullptr);
    EXPECT_EQ(*FindEnvironment(L"=OMBI_HIDDEN"), L"h");
    WriteEnvironment(L"=OMBI_HIDDEN", nullptr);
}

} // namespace
