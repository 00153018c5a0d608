// A line run on behalf of other code (a system call, a command of for /f)
// leaves the stage of the command that asked for it as it found it.
#include "app/toolkit/omdib.h"
#include "lang/command_args.h"
#include "lang/shell_command.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

TEST(CommandLine, TheAskingStageSurvivesTheLineItRuns)
{
    static wchar_t stage[kLineMax];
    CopyCutW(stage, L"asker  first \"second arg\" /q", kLineMax);
    CommandArgs.Parse(stage);

    TheShell.RunCommandLine(L"rem one & rem two /x three");

    // Whatever the heap does next, the stage reads as before.
    std::vector<std::unique_ptr<wchar_t[]>> noise;
    for (int i = 0; i < 8; ++i) {
        noise.push_back(std::make_unique<wchar_t[]>(kLineMax));
        std::fill_n(noise.back().get(), kLineMax - 1, L'z');
        noise.back()[kLineMax - 1] = 0;
    }
    EXPECT_STREQ(CommandArgs.Command, L"asker");
    ASSERT_EQ(CommandArgs.ArgCount, 2);
    EXPECT_STREQ(CommandArgs.Args[1], L"second arg");
    EXPECT_STREQ(CommandArgs.Switches, L"q");
    EXPECT_EQ(std::wstring(CommandArgs.Tail), L" first \"second arg\" /q");
    EXPECT_EQ(std::wstring(CommandArgs.WholeLine), L"asker  first \"second arg\" /q");
}

} // namespace
