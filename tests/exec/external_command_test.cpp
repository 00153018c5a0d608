// External commands end to end: the sample .EXC started by ombc.exe reads its
// arguments, walks files, sets a variable the shell then sees, and has the
// shell run a nested line, all through requests to the shell's window; a
// console program that is such a client is served on either capture route.
#include "exec_support.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct ExternalCase {
    std::string lines;
    std::wstring expected;
};

TEST(ExternalCommand, ArgumentsWalkVariablesAndNestedRuns)
{
    TempFolder f;
    f.WriteBytes(L"b.txt", "b");
    f.WriteBytes(L"a.txt", "a");
    f.WriteBytes(L"c.log", "c");
    // The same client as a console program: under the loader or on the
    // shell's pipes it finds the window by the variable the shell hands it.
    OmbrelSetting noBanner(L"Copyright", 0);
    std::wstring sample = ProgramFolder() + L"\\excsample.exc";
    ASSERT_TRUE(CopyFileW(sample.c_str(), (f / L"piped.exe").c_str(), FALSE));
    const ExternalCase cases[] = {
        {"excsample *.txt COUNTED\necho level %errorlevel% counted %COUNTED%\n",
         L"argument 0: excsample\nargument 1: *.txt\nargument 2: COUNTED\nfile: a.txt\nfile: b.txt\n"
         L"nested sees 2\nnested errorlevel 0\nlevel 2 counted 2\n"},
        // Nothing found: the count is 0 and the variable says so.
        {"excsample *.none N\necho level %errorlevel% n=%N%\n",
         L"argument 0: excsample\nargument 1: *.none\nargument 2: N\nnested sees 0\nnested errorlevel 0\n"
         L"level 0 n=0\n"},
        {"piped *.txt VIA\necho level %errorlevel% via %VIA%\n",
         L"argument 0: piped\nargument 1: *.txt\nargument 2: VIA\nfile: a.txt\nfile: b.txt\n"
         L"nested sees 2\nnested errorlevel 0\nlevel 2 via 2\n"},
        // Too few arguments: the command says how to call it.
        {"excsample\necho level %errorlevel%\n",
         L"argument 0: excsample\nusage: excsample PATTERN NAME\nlevel 255\n"},
    };
    for (int emulator : kCaptureRoutes) {
        OmbrelSetting route(L"Emulator", emulator);
        for (const ExternalCase& c : cases)
            EXPECT_EQ(TypedWithPrograms(f, c.lines), c.expected) << c.lines.c_str() << " emulator " << emulator;
    }
}

} // namespace
