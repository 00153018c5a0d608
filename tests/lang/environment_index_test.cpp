// Variables the shell sets are read through its index, and yet the process
// environment, which children inherit and set lists, is exactly what plain
// platform calls would have made of it, in the same order.
#include "lang/environment_index.h"
#include "lang/environment_list.h"
#include "lang/variables.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// The process block as a child would receive it, without hidden names.
std::vector<std::wstring> ProcessBlock()
{
    std::vector<std::wstring> strings;
    wchar_t* block = GetEnvironmentStringsW();
    for (const wchar_t* p = block; *p; p += lstrlenW(p) + 1)
        if (*p != L'=') strings.emplace_back(p);
    FreeEnvironmentStringsW(block);
    return strings;
}

TEST(EnvironmentIndex, WritesThroughAtOnceAndKeepsTheProcessOrder)
{
    struct Step {
        const wchar_t* Name;
        const wchar_t* Value; // null deletes
    };
    const Step steps[] = {
        {L"OMBI_ZULU", L"1"}, {L"ombi_alpha", L"2"}, {L"OMBI_MIKE", L"a=b"}, {L"OMBI_Alpha", L"changed"},
        {L"OMBI_ZULU", nullptr}, {L"OMBI_ZULU", L"back"},  {L"ombi_mike", L""},
    };
    for (const Step& step : steps) {
        SetVariable(step.Name, step.Value);
        // What a child inherits, and what set lists, name by name and in order.
        std::vector<std::wstring> block = ProcessBlock();
        std::vector<std::wstring> listed;
        for (const EnvironmentEntry& entry : ListEnvironment()) listed.push_back(entry.Name + L"=" + entry.Value);
        EXPECT_EQ(listed, block) << step.Name;
        for (const std::wstring& entry : block) {
            size_t equals = entry.find(L'=');
            std::wstring name = entry.substr(0, equals);
            const std::wstring* indexed = FindEnvironment(name.c_str());
            ASSERT_NE(indexed, nullptr) << name;
            EXPECT_EQ(*indexed, entry.substr(equals + 1)) << name;
        }
        wchar_t value[kValueMax];
        int length = ReadVariable(step.Name, value, kValueMax);
        wchar_t direct[kValueMax] = {};
        GetEnvironmentVariableW(step.Name, direct, kValueMax);
        EXPECT_EQ(std::wstring(value, size_t(length)), std::wstring(direct)) << step.Name;
    }
    EXPECT_EQ(FindEnvironment(L"OMBI_MIKE"), nullptr);
    EXPECT_EQ(*FindEnvironment(L"Ombi_Zulu"), L"back");
    // Hidden names are read where they live.
    ASSERT_TRUE(WriteEnvironment(L"=OMBI_HIDDEN", L"h"));
    ASSERT_NE(FindEnvironment(L"=OMBI_HIDDEN"), nullptr);
    EXPECT_EQ(*FindEnvironment(L"=OMBI_HIDDEN"), L"h");
    WriteEnvironment(L"=OMBI_HIDDEN", nullptr);
    for (const wchar_t* name : {L"OMBI_ZULU", L"OMBI_ALPHA"}) SetVariable(name, nullptr);
}

} // namespace
