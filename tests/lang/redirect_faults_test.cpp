// Redirection under faults: tees onto their own source, full tables, refused
// statements, read-only files, odd UTF-16 files, code-page input and real
// overflow. Every case runs in a live shell and checks the folder byte for
// byte afterwards, and a hang counts as a failure instead of filling the disk.
#include "lang/folder_snapshot.h"
#include "lang/shell_session.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using lang_test::FolderFiles;
using lang_test::ShellSession;
using lang_test::SnapshotFolder;
using lang_test::TemporaryFiles;

std::wstring ManyAppends(const std::wstring& head, const std::wstring& tail)
{
    std::wstring line = head;
    for (int i = 0; i < 32; ++i) line += L">>t" + std::to_wstring(i);
    return line + tail;
}

// The code page's own reading of a byte, as the shell should see it.
std::wstring OemText(const std::string& bytes)
{
    wchar_t wide[64];
    int n = MultiByteToWideChar(CP_OEMCP, 0, bytes.data(), int(bytes.size()), wide, 64);
    return std::wstring(wide, size_t(n));
}

struct FaultCase {
    const char* Fault;
    FolderFiles Before;
    std::vector<std::wstring> ReadOnly;
    std::wstring Line;
    std::wstring Output;
    FolderFiles After; // the whole folder afterwards
};

const std::wstring kRefused = L"Unable to redirect\n\n";

std::vector<FaultCase> Cases()
{
    const std::string wideStart("\xFF\xFE" "a\0b", 5);
    return {
        {"1 tee onto its own source", {}, {}, L"echo x>f>>f", L"", {{L"f", "x\r\n"}}},
        {"1 append twice", {{L"f", "old\r\n"}}, {}, L"echo x>>f>>f", L"", {{L"f", "old\r\nx\r\n"}}},
        {"1 another case", {{L"f", "old\r\n"}}, {}, L"echo x>>f>>F", L"", {{L"f", "old\r\nx\r\n"}}},
        {"1 another path", {{L"f", "old\r\n"}}, {}, L"echo x>>f>>.\\f", L"", {{L"f", "old\r\nx\r\n"}}},
        {"1 source again behind another tee",
         {{L"g", "g\r\n"}},
         {},
         L"echo x>f>>g>>f",
         L"",
         {{L"f", "x\r\n"}, {L"g", "g\r\nx\r\n"}}},
        {"1 one tee named twice", {}, {}, L"echo x>f>>g>>g", L"", {{L"f", "x\r\n"}, {L"g", "x\r\n"}}},
        {"2 thirty-three redirections",
         {{L"a.txt", "keep\r\n"}},
         {},
         ManyAppends(L"echo x>a.txt", L""),
         kRefused,
         {{L"a.txt", "keep\r\n"}}},
        {"3 no copy after a refused first output",
         {{L"ro.txt", "ro\r\n"}, {L"a.txt", "a\r\n"}},
         {L"ro.txt"},
         L"echo x>ro.txt>a.txt",
         kRefused,
         {{L"ro.txt", "ro\r\n"}, {L"a.txt", "a\r\n"}}},
        {"3 no append after a refused first output",
         {{L"ro.txt", "ro\r\n"}, {L"a.txt", "a\r\n"}},
         {L"ro.txt"},
         L"echo x>ro.txt>>a.txt",
         kRefused,
         {{L"ro.txt", "ro\r\n"}, {L"a.txt", "a\r\n"}}},
        {"3 no copy after a missing input",
         {{L"a.txt", "a\r\n"}, {L"b.txt", "b\r\n"}},
         {},
         L"echo x>a.txt>b.txt<missing.txt",
         kRefused,
         {{L"a.txt", "a\r\n"}, {L"b.txt", "b\r\n"}}},
        {"4 read-only second output",
         {{L"ro.txt", "ro\r\n"}, {L"a.txt", "a\r\n"}},
         {L"ro.txt"},
         L"echo x>a.txt>ro.txt",
         kRefused,
         {{L"ro.txt", "ro\r\n"}, {L"a.txt", "a\r\n"}}},
        {"4 read-only appended tee",
         {{L"ro.txt", "ro\r\n"}},
         {L"ro.txt"},
         L"echo x>new.txt>>ro.txt",
         kRefused,
         {{L"ro.txt", "ro\r\n"}}},
        {"5 full table before a pipe", {}, {}, ManyAppends(L"echo x", L"|rem"), kRefused, {}},
        {"7 odd UTF-16 file",
         {{L"u.txt", wideStart}},
         {},
         L"echo c>>u.txt",
         L"",
         {{L"u.txt", std::string("\xFF\xFE" "a\0b\0c\0\r\0\n\0", 12)}}},
        {"8 code-page input",
         {{L"in.txt", "caf\xE9\r\n"}},
         {},
         L"getstr<in.txt&echo [%getstr%]",
         L"[caf" + OemText("\xE9") + L"]\n",
         {{L"in.txt", "caf\xE9\r\n"}}},
        {"9 real overflow", {}, {}, L"calc ?1e308*10", L"Floating point error\n\n", {}},
        {"9 real overflow in let", {}, {}, L"let r=-1e308-1e308 & echo [%r%]", L"Floating point error\n\n[]\n", {}},
    };
}

void Prepare(const TempFolder& folder, const FaultCase& c)
{
    for (const auto& [name, bytes] : SnapshotFolder(folder.Path())) {
        SetFileAttributesW((folder / name).c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW((folder / name).c_str());
    }
    for (const auto& [name, bytes] : c.Before) folder.WriteBytes(name, bytes);
    for (const std::wstring& name : c.ReadOnly) SetFileAttributesW((folder / name).c_str(), FILE_ATTRIBUTE_READONLY);
}

TEST(RedirectFaults, EachFaultLeavesTheFilesAsTheyShouldBe)
{
    TempFolder folder;
    auto shell = std::make_unique<ShellSession>(folder.Path());
    ASSERT_TRUE(shell->Started());
    auto temporaryBefore = TemporaryFiles();
    for (const FaultCase& c : Cases()) {
        Prepare(folder, c);
        std::wstring output;
        if (!shell->Run(c.Line, output, 20000)) {
            ADD_FAILURE() << c.Fault << ": the statement did not end";
            shell = std::make_unique<ShellSession>(folder.Path());
            continue;
        }
        EXPECT_EQ(output, c.Output) << c.Fault;
        EXPECT_EQ(SnapshotFolder(folder.Path()), c.After) << c.Fault;
        EXPECT_EQ(TemporaryFiles(), temporaryBefore) << c.Fault;
    }
}

} // namespace
