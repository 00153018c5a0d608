// The settings store against bad input: files that are binary, huge, have no
// line ends or repeat their keys; values longer than the reader's buffer;
// stores that cannot be written.
#include "app/profile/profile.h"
#include "store_scope.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// A reader's buffer with marked units behind it, to see any overrun.
class GuardedBuffer {
public:
    explicit GuardedBuffer(int size) : size_(size), units_(size_t(size) + 16, kMark) {}
    wchar_t* Data() { return units_.data(); }
    int Size() const { return size_; }
    bool GuardIntact() const
    {
        for (size_t i = size_t(size_); i < units_.size(); ++i)
            if (units_[i] != kMark) return false;
        return true;
    }

private:
    static constexpr wchar_t kMark = 0xABCD;
    int size_;
    std::vector<wchar_t> units_;
};

// Reads key and the section's key list into small buffers: the results must
// fit their buffers, whatever the store holds.
void ReadWithinBounds(const wchar_t* section, const wchar_t* key)
{
    GuardedBuffer value(16);
    int n = ProfileReadString(section, key, L"default", value.Data(), value.Size());
    EXPECT_GE(n, 0);
    EXPECT_LE(n, value.Size() - 1);
    EXPECT_EQ(value.Data()[n], 0);
    EXPECT_TRUE(value.GuardIntact());
    GuardedBuffer names(16);
    n = ProfileReadString(section, nullptr, L"", names.Data(), names.Size());
    EXPECT_LE(n, names.Size() - 2);
    EXPECT_TRUE(names.GuardIntact());
    ProfileReadInt(section, key, 5);
}

TEST(ProfileInput, BrokenFilesAreReadWithoutHarm)
{
    TempFolder folder;
    std::string binary;
    uint32_t seed = 12345;
    for (int i = 0; i < 65536; ++i) {
        seed = seed * 1103515245u + 12345u;
        binary.push_back(char(seed >> 24));
    }
    binary.insert(30000, "\r\n[S]\r\nk=inside binary\r\n");
    std::string longLine = "[S]\r\nk=" + std::string(4 << 20, 'x');
    std::string manyLines = "[S]\r\n";
    for (int i = 0; i < 100000; ++i) manyLines += "key" + std::to_string(i) + "=value" + std::to_string(i) + "\r\n";

    struct Case {
        const char* What;
        std::string Bytes;
    };
    const Case cases[] = {
        {"binary", binary},
        {"one huge line", longLine},
        {"many lines", manyLines},
        {"no line ends", "[S] k=v [T] k=w"},
        {"carriage returns only", "[S]\rk=v\r[T]\rk=w\r"},
        {"duplicate keys and sections", "[S]\r\nk=first\r\nk=second\r\n[S]\r\nk=third\r\n"},
        {"odd byte count after a UTF-16 mark", "\xFF\xFE[\0S\0]\0\r"},
        {"empty", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.What);
        folder.WriteBytes(L"bad.ini", c.Bytes);
        StoreScope store(L"INI=" + (folder / L"bad.ini"));
        ReadWithinBounds(L"S", L"k");
    }

    StoreScope store(L"INI=" + (folder / L"bad.ini"));
    folder.WriteBytes(L"bad.ini", manyLines);
    wchar_t value[32];
    ProfileReadString(L"S", L"key99999", L"", value, 32);
    EXPECT_STREQ(value, L"value99999");
    folder.WriteBytes(L"bad.ini", "[S]\r\nk=first\r\nk=second\r\n");
    ProfileReadString(L"S", L"k", L"", value, 32);
    EXPECT_TRUE(value == std::wstring(L"first") || value == std::wstring(L"second")) << value;
}

TEST(ProfileInput, LongValuesAreCutToTheBuffer)
{
    TempFolder folder;
    std::wstring registryName = L"OmbTestLong" + std::to_wstring(GetCurrentProcessId()) + L".ini";
    for (const std::wstring& argument : {L"INI=" + (folder / L"long.ini"), L"USE=" + registryName}) {
        SCOPED_TRACE(argument);
        StoreScope store(argument);
        std::wstring longText(5000, L'v');
        ASSERT_TRUE(ProfileWriteString(L"S", L"long", longText.c_str()));
        GuardedBuffer value(10);
        EXPECT_EQ(ProfileReadString(L"S", L"long", L"", value.Data(), value.Size()), 9);
        EXPECT_EQ(std::wstring(value.Data()), std::wstring(9, L'v'));
        EXPECT_TRUE(value.GuardIntact());

        GuardedBuffer defaultValue(4);
        EXPECT_EQ(ProfileReadString(L"S", L"none", L"a long default", defaultValue.Data(), 4), 3);
        EXPECT_STREQ(defaultValue.Data(), L"a l");
        EXPECT_TRUE(defaultValue.GuardIntact());

        // A list that does not fit is cut with two terminators.
        ProfileWriteString(L"S", L"alpha", L"1");
        ProfileWriteString(L"S", L"beta", L"2");
        GuardedBuffer names(8);
        EXPECT_EQ(ProfileReadString(L"S", nullptr, L"", names.Data(), names.Size()), 6);
        EXPECT_EQ(names.Data()[6], 0);
        EXPECT_EQ(names.Data()[7], 0);
        EXPECT_TRUE(names.GuardIntact());
        EXPECT_EQ(ProfileReadString(L"S", L"long", L"", value.Data(), 0), 0);
        EXPECT_TRUE(value.GuardIntact());
    }
}

TEST(ProfileInput, AReadOnlyFileIsLeftAsItWasAndTheReasonKept)
{
    TempFolder folder;
    const std::string before = "[Ombrel]\r\nTips=1\r\n[Keep]\r\nk=v\r\n";
    folder.WriteBytes(L"ro.ini", before);
    ASSERT_TRUE(SetFileAttributesW((folder / L"ro.ini").c_str(), FILE_ATTRIBUTE_READONLY));
    StoreScope store(L"INI=" + (folder / L"ro.ini"));

    SetLastError(0);
    EXPECT_FALSE(ProfileWriteInt(L"Ombrel", L"Tips", 0));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_ACCESS_DENIED));
    EXPECT_FALSE(ProfileWriteString(L"Keep", L"k", nullptr));
    EXPECT_FALSE(ProfileWriteString(L"Keep", nullptr, nullptr));
    EXPECT_EQ(ProfileWriteQuoted(L"Keep", L"q", L" x "), 0);
    EXPECT_EQ(folder.ReadBytes(L"ro.ini"), before);
    // Nothing of the refused writes lingers in a cache either.
    EXPECT_EQ(ProfileReadInt(L"Ombrel", L"Tips", 5), 1);

    StoreScope missing(L"\"INI=" + (folder / L"no such folder\\x.ini") + L"\"");
    EXPECT_STREQ(TheProfile.IniFileName, (folder / L"no such folder\\x.ini").c_str());
    EXPECT_FALSE(ProfileWriteInt(L"Ombrel", L"Tips", 0));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_PATH_NOT_FOUND));
    EXPECT_FALSE(folder.Exists(L"no such folder"));
    EXPECT_FALSE(folder.Exists(L"no"));
}

} // namespace
