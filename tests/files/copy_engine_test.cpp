// The copy engine in process, where a break and a read error can be made to
// happen in the middle of a file: an interrupted copy never costs the old
// destination a byte and leaves no temporary file.
#include "app/host.h"
#include "files/safe_copy.h"
#include "screen/screen_store.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Ctrl-C arrives at the given poll; every copy block polls once.
class BreakingHost : public ShellHost {
public:
    int BreakAt = 0;
    int Polls = 0;
    void PollBreak() override
    {
        if (++Polls == BreakAt) TheScreen.BreakFlag = 1;
    }
    wchar_t ReadKey() override { return 3; }
    bool ReadLine(wchar_t*, int) override { return false; }
    void RequestExit() override {}
    bool Interactive() const override { return false; }
};

std::string Pattern(size_t size, char seed)
{
    std::string bytes(size, 0);
    for (size_t i = 0; i < size; ++i) bytes[i] = char(seed + i * 7 + i / 251);
    return bytes;
}

// Names in the folder other than the ones expected: a temporary left behind.
int EntriesIn(const TempFolder& folder)
{
    int count = 0;
    WIN32_FIND_DATAW found;
    HANDLE h = FindFirstFileW((folder.Path() + L"\\*").c_str(), &found);
    if (h == INVALID_HANDLE_VALUE) return 0;
    do {
        if (std::wstring(found.cFileName) != L"." && std::wstring(found.cFileName) != L"..") ++count;
    } while (FindNextFileW(h, &found));
    FindClose(h);
    return count;
}

class CopyEngine : public testing::Test {
protected:
    BreakingHost host;
    ShellHost* saved = nullptr;
    TempFolder folder;
    void SetUp() override
    {
        saved = Host;
        Host = &host;
        TheScreen.BreakFlag = 0;
    }
    void TearDown() override
    {
        Host = saved;
        TheScreen.BreakFlag = 0;
    }
};

TEST_F(CopyEngine, AnInterruptedCopyLeavesTheOldDestinationAndNoTemporaryFile)
{
    const std::string source = Pattern(200000, 'a'), old = Pattern(5000, 'z');
    struct Case {
        const char* name;
        bool present;
        bool readError; // the source breaks off after part of its data
        CopyResult expected;
    } cases[] = {
        {"Ctrl-C over an existing file", true, false, CopyResult::Broken},
        {"read error over an existing file", true, true, CopyResult::Failed},
        {"Ctrl-C into a new file", false, false, CopyResult::Broken},
        {"read error into a new file", false, true, CopyResult::Failed},
    };
    for (const Case& c : cases) {
        folder.WriteBytes(L"src.bin", source);
        if (c.present) folder.WriteBytes(L"dst.bin", old);
        else DeleteFileW((folder / L"dst.bin").c_str());
        host.Polls = 0;
        host.BreakAt = c.readError ? 0 : 3;
        TheScreen.BreakFlag = 0;

        UniqueFile input;
        if (c.readError) {
            // A pipe whose writer has gone: the reads fail with broken pipe
            // after the first 100,000 bytes.
            HANDLE reader, writer;
            ASSERT_TRUE(CreatePipe(&reader, &writer, nullptr, 1 << 20));
            DWORD put;
            WriteFile(writer, source.data(), 100000, &put, nullptr);
            CloseHandle(writer);
            input.reset(reader);
        } else {
            input.reset(CreateFileW((folder / L"src.bin").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, 0, nullptr));
        }
        CopyOutcome outcome = CopyInto(input.get(), (folder / L"dst.bin").c_str(), c.present);
        EXPECT_EQ(outcome.Result, c.expected) << c.name;
        if (c.readError) {
            EXPECT_EQ(outcome.Error, DWORD(ERROR_BROKEN_PIPE)) << c.name;
        }
        if (c.present) EXPECT_TRUE(folder.ReadBytes(L"dst.bin") == old) << c.name;
        else EXPECT_FALSE(folder.Exists(L"dst.bin")) << c.name;
        EXPECT_EQ(EntriesIn(folder), c.present ? 2 : 1) << c.name;
        EXPECT_EQ(folder.ReadBytes(L"src.bin"), source) << c.name;
    }
}

TEST_F(CopyEngine, AFinishedOverwriteHasTheDataTheTimeAndNoAttributes)
{
    const std::string source = Pattern(70000, 'q');
    folder.WriteBytes(L"src.bin", source);
    folder.WriteBytes(L"dst.bin", "old");
    FILETIME stamp{0x12345670, 0x01D00000};
    {
        UniqueFile f(CreateFileW((folder / L"src.bin").c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        SetFileTime(f.get(), nullptr, nullptr, &stamp);
    }
    SetFileAttributesW((folder / L"src.bin").c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE);
    CopySource input;
    ASSERT_TRUE(input.Open((folder / L"src.bin").c_str()));
    EXPECT_EQ(ProbeDestination(input.Identity(), (folder / L"dst.bin").c_str()), DestinationState::Present);
    EXPECT_EQ(ProbeDestination(input.Identity(), (folder / L"src.bin").c_str()), DestinationState::SameFile);
    EXPECT_EQ(CopyInto(input.Handle(), (folder / L"dst.bin").c_str(), true).Result, CopyResult::Copied);
    EXPECT_EQ(folder.ReadBytes(L"dst.bin"), source);
    EXPECT_EQ(host.Polls, 3); // one poll per block of 32 KB
    WIN32_FILE_ATTRIBUTE_DATA data;
    ASSERT_TRUE(GetFileAttributesExW((folder / L"dst.bin").c_str(), GetFileExInfoStandard, &data));
    EXPECT_EQ(CompareFileTime(&data.ftLastWriteTime, &stamp), 0);
    EXPECT_EQ(data.dwFileAttributes & FILE_ATTRIBUTE_READONLY, 0u);
    EXPECT_EQ(EntriesIn(folder), 2);
    SetFileAttributesW((folder / L"src.bin").c_str(), FILE_ATTRIBUTE_NORMAL);
}

} // namespace
