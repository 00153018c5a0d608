// What the loader finds once, before the first line runs: labels (the first
// of a name wins, case-blind), groups over several lines and the labels they
// swallow, procedures, and a label at the end of a long program.
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct LoadCase {
    const char* Program;
    std::wstring Output;
};

TEST(BatchLoad, LabelsGroupsAndProceduresAreFoundOnce)
{
    const LoadCase cases[] = {
        {"@echo off\r\ngoto twice\r\n:twice\r\necho first\r\ngoto end\r\n:TWICE\r\necho second\r\n:end\r\n",
         L"first\n"},
        {"@echo off\r\necho before\r\ngoto nowhere\r\necho after\r\n", L"before\nNo such label\n\n"},
        // A label line inside a group is part of the group, not a label.
        {"@echo off\r\nif 1==2 (\r\n\r\n:inside\r\necho no\r\n)\r\ngoto inside\r\n", L"No such label\n\n"},
        {"@echo off\r\nif 1==1 (\r\n  echo one\r\n\r\n  echo two\r\n)\r\necho three\r\n", L"one\ntwo\nthree\n"},
        {"@echo off\r\ncallproc Show x\r\ngoto end\r\nproc show\r\necho in %1\r\nendproc\r\n:end\r\necho end\r\n",
         L"in x\nend\n"},
        {"@echo off\r\nproc lost\r\necho body\r\n", L"End of procedure not found\n\n"},
    };
    TempFolder f;
    for (const LoadCase& c : cases) {
        f.WriteBytes(L"p.bat", c.Program);
        EXPECT_EQ(JoinLines(RunOmbcIn(f.Path(), L"/C p.bat").Output), c.Output) << c.Program;
    }
}

TEST(BatchLoad, AJumpToTheEndOfALongProgramLandsOnTheFirstOfItsName)
{
    std::string program = "@echo off\r\nset n=0\r\n:again\r\nlet n=n+1\r\nif %n% lss 3 goto last\r\ngoto out\r\n";
    for (int i = 0; i < 20000; ++i) program += i % 2 ? "rem filler\r\n" : "\r\n";
    program += ":last\r\necho at the end %n%\r\ngoto again\r\n:last\r\necho never\r\n:out\r\necho out %n%\r\n";
    TempFolder f;
    f.WriteBytes(L"long.bat", program);
    EXPECT_EQ(JoinLines(RunOmbcIn(f.Path(), L"/C long.bat").Output), L"at the end 1\nat the end 2\nout 3\n");
}

} // namespace
