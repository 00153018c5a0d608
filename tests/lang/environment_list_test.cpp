// The environment as set lists it and the environment editor edits it.
#include "lang/environment_index.h"
#include "lang/environment_list.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace {

int Find(const std::vector<EnvironmentEntry>& entries, const std::wstring& name)
{
    for (size_t i = 0; i < entries.size(); ++i)
        if (entries[i].Name == name) return int(i);
    return -1;
}

TEST(EnvironmentList, ListsAndEditsTheProcessEnvironment)
{
    WriteEnvironment(L"OMBT_E1", L"a=b");
    WriteEnvironment(L"OMBT_E2", L"two");
    auto entries = ListEnvironment();
    int first = Find(entries, L"OMBT_E1"), second = Find(entries, L"OMBT_E2");
    ASSERT_GE(first, 0);
    ASSERT_GE(second, 0);
    EXPECT_EQ(entries[size_t(first)].Value, L"a=b");
    // Hidden entries (names beginning with "=") are never offered.
    ASSERT_TRUE(WriteEnvironment(L"=OMBT_HIDDEN", L"x"));
    for (const auto& entry : ListEnvironment()) {
        EXPECT_FALSE(entry.Name.empty());
        EXPECT_EQ((entry.Name + entry.Value).find(L"OMBT_HIDDEN"), std::wstring::npos);
    }
    WriteEnvironment(L"=OMBT_HIDDEN", nullptr);

    EXPECT_TRUE(ApplyEnvironmentEdit(L"OMBT_E2", L"changed"));
    SyncEnvironment();
    wchar_t value[16] = {};
    GetEnvironmentVariableW(L"OMBT_E2", value, 16);
    EXPECT_STREQ(value, L"changed");
    EXPECT_TRUE(ApplyEnvironmentEdit(L"OMBT_E1", L""));
    SyncEnvironment();
    EXPECT_EQ(GetEnvironmentVariableW(L"OMBT_E1", value, 16), 0u);
    EXPECT_EQ(Find(ListEnvironment(), L"OMBT_E1"), -1);
    // Deleting what is not there is no failure.
    EXPECT_TRUE(ApplyEnvironmentEdit(L"OMBT_E1", L""));
    WriteEnvironment(L"OMBT_E2", nullptr);
}

} // namespace
