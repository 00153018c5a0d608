// A bounded, repeatable storm of redirections: a few thousand statements
// mixing >, >>, < and |, read-only and missing files, and one file under
// several spellings. After every statement: it ended, and if it was refused
// with "Unable to redirect" it changed no file and left no temporary file.
#include "lang/folder_snapshot.h"
#include "lang/shell_session.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using lang_test::ShellSession;
using lang_test::SnapshotFolder;
using lang_test::TemporaryFiles;

constexpr int kStatements = 2000;
constexpr size_t kLargestFile = 1 << 16;

class StatementMaker {
public:
    explicit StatementMaker(const std::wstring& folder) : folder_(folder) {}

    std::wstring Next()
    {
        static const wchar_t* const commands[] = {L"echo x", L"echo two words", L"rem", L"echo"};
        std::wstring line = commands[Pick(4)];
        // Now and then a table that overflows.
        int count = Pick(40) == 0 ? 33 : int(Pick(5));
        for (int i = 0; i < count; ++i) line += Operator() + Name();
        // Later stages carry no redirection of their own: a failure there
        // comes after the first stage has done its work, by design.
        if (Pick(6) == 0) line += Pick(2) ? L" | rem" : L" | echo piped";
        return line;
    }

private:
    uint32_t Pick(uint32_t n) { return random_() % n; }

    std::wstring Operator()
    {
        static const wchar_t* const operators[] = {L">", L" > ", L">>", L" >> ", L"<", L" < "};
        return operators[Pick(6)];
    }

    std::wstring Name()
    {
        const std::wstring names[] = {
            L"a.txt", L"A.TXT", L".\\a.txt", L"\"a.txt\"", folder_ + L"\\a.txt", L"b.txt", L"B.txt",
            L"ro.txt", L"RO.TXT", L"missing.txt", L"u.txt", L"sub", L"bad?name", L"new.txt",
        };
        return names[Pick(sizeof(names) / sizeof(names[0]))];
    }

    std::wstring folder_;
    std::mt19937 random_{20221122u};
};

// The starting files, and again whenever one has grown past its bound.
void Reset(const TempFolder& folder)
{
    for (const auto& [name, bytes] : SnapshotFolder(folder.Path())) {
        SetFileAttributesW((folder / name).c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW((folder / name).c_str());
    }
    folder.WriteBytes(L"a.txt", "alpha\r\n");
    folder.WriteBytes(L"b.txt", "beta\r\n");
    folder.WriteBytes(L"ro.txt", "read only\r\n");
    folder.WriteBytes(L"u.txt", std::string("\xFF\xFEu\0", 4));
    SetFileAttributesW((folder / L"ro.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    CreateDirectoryW((folder / L"sub").c_str(), nullptr);
}

bool TooBig(const lang_test::FolderFiles& files)
{
    for (const auto& [name, bytes] : files)
        if (bytes.size() > kLargestFile) return true;
    return false;
}

TEST(RedirectFuzz, RefusedStatementsChangeNothingAndEveryStatementEnds)
{
    TempFolder folder;
    Reset(folder);
    auto shell = std::make_unique<ShellSession>(folder.Path());
    ASSERT_TRUE(shell->Started());
    StatementMaker maker(folder.Path());
    auto temporary = TemporaryFiles();
    int refused = 0;
    for (int i = 0; i < kStatements; ++i) {
        std::wstring line = maker.Next();
        auto before = SnapshotFolder(folder.Path());
        std::wstring output;
        ASSERT_TRUE(shell->Run(line, output)) << "statement " << i << " did not end: " << line;
        if (output.find(L"Unable to redirect") != std::wstring::npos) {
            ++refused;
            ASSERT_EQ(SnapshotFolder(folder.Path()), before) << "statement " << i << ": " << line;
        }
        ASSERT_EQ(TemporaryFiles(), temporary) << "statement " << i << ": " << line;
        if (TooBig(SnapshotFolder(folder.Path()))) Reset(folder);
    }
    // The storm must exercise both roads.
    EXPECT_GT(refused, kStatements / 10);
    EXPECT_LT(refused, kStatements * 9 / 10);
}

} // namespace
