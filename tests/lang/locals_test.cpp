// Parameters, procedures' own parameters, shift, data and read, setlocal and
// endlocal, run end to end through ombc.exe.
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::wstring RunIn(const TempFolder& folder, const std::string& typed)
{
    return JoinLines(RunOmbcIn(folder.Path(), L"", typed).Output);
}

TEST(Locals, ParametersKeepTheirQuotesButAProcedureDropsThem)
{
    TempFolder f;
    f.WriteBytes(L"p.bat", "@call q.bat one \"two x\" three\r\n");
    f.WriteBytes(L"q.bat", "@echo off\r\n"
                           "echo [%0] [%1] [%2] [%3] %#\r\n"
                           "shift /2\r\n"
                           "echo [%0] [%1] [%2] [%3] %# %*\r\n"
                           "shift\r\n"
                           "echo [%0] [%1]\r\n"
                           "callproc show a \"b c\"\r\n"
                           "echo [%0] %# back\r\n"
                           "stop\r\n"
                           "proc show\r\n"
                           "echo [%0] [%1] [%2] %# %*\r\n"
                           "shift\r\n"
                           "echo [%0] [%1] [%2]\r\n"
                           "endproc\r\n");
    // shift moves the slots but leaves the count and the text of all of them.
    EXPECT_EQ(RunIn(f, "p.bat\n"), L"[q.bat] [one] [\"two x\"] [three] 3\n"
                                   L"[q.bat] [one] [three] [] 3 one \"two x\" three\n"
                                   L"[one] [three]\n"
                                   L"[show] [a] [b c] 2 a \"b c\"\n"
                                   L"[a] [b c] []\n"
                                   L"[one] 3 back\n");
}

TEST(Locals, OnlyAProcAtTheFirstColumnDefinesAProcedure)
{
    TempFolder f;
    f.WriteBytes(L"i.bat", "@echo off\r\necho before\r\n proc p\r\necho never\r\n");
    EXPECT_EQ(RunIn(f, "i.bat\ny\n"), L"before\nMisplaced procedure\n\nTerminate Batch at line 3 (Y/N)? y\n");
    // Without a name "proc" defines nothing either.
    f.WriteBytes(L"n.bat", "@echo off\r\nproc\r\necho never\r\n");
    EXPECT_EQ(RunIn(f, "n.bat\ny\n"), L"Misplaced procedure\n\nTerminate Batch at line 2 (Y/N)? y\n");
}

TEST(Locals, DataAndReadWalkAListPerProgram)
{
    TempFolder f;
    f.WriteBytes(L"d.bat", "@echo off\r\n"
                           "data a, b,,c\r\n"
                           "read\r\necho [%READ%]\r\n"
                           "read\r\necho [%READ%]\r\n"
                           "read\r\necho [%READ%]\r\n"
                           "read\r\necho [%READ%]\r\n"
                           "read\r\necho [%READ%]\r\n"
                           "read 1\r\nread\r\necho [%READ%]\r\n"
                           "read 0x3\r\nread\r\necho [%READ%]\r\n"
                           "read 9\r\nread\r\necho [%READ%]\r\n"
                           // An empty list keeps its index for the next one.
                           "data\r\ndata w,x,y,z,last\r\nread\r\necho [%READ%]\r\n");
    // Items keep their blanks; an empty item and the end both delete READ;
    // an index past the end is refused. The prompt's list is its own.
    EXPECT_EQ(RunIn(f, "data top\nd.bat\nread\necho [%READ%]\n"),
              L"[a]\n[ b]\n[]\n[c]\n[]\n[ b]\n[c]\n[]\n[last]\n[top]\n");
}

TEST(Locals, EndlocalRestoresTheFirstHalfOfTheEnvironment)
{
    TempFolder f;
    // One of the first variables of the block is certainly in the half that
    // setlocal keeps; a variable made afterwards goes to the end and is not.
    std::wstring all = JoinLines(RunOmbcIn(f.Path(), L"/C set").Output);
    std::string name;
    for (size_t start = 0, line = 0; name.empty() && line < 5 && start < all.size(); ++line) {
        size_t end = all.find(L'\n', start);
        std::wstring candidate = all.substr(start, all.find(L'=', start) - start);
        bool plain = !candidate.empty() && candidate.find_first_not_of(L"ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                                         L"abcdefghijklmnopqrstuvwxyz0123456789_") ==
                                               std::wstring::npos;
        if (plain) name.assign(candidate.begin(), candidate.end());
        start = end + 1;
    }
    ASSERT_FALSE(name.empty()) << all.substr(0, 300);
    f.WriteBytes(L"l.bat", "@echo off\r\n"
                           "set " + name + "=before\r\n"
                           "setlocal\r\n"
                           "set " + name + "=changed\r\n"
                           "set ZZ_MADE_INSIDE=new\r\n"
                           "endlocal\r\n"
                           "echo [%" + name + "%] [%ZZ_MADE_INSIDE%]\r\n"
                           "endlocal\r\n"
                           "echo [%ZZ_MADE_INSIDE%]\r\n");
    EXPECT_EQ(RunIn(f, "l.bat\n"), L"[before] [new]\n[new]\n");
}

} // namespace
