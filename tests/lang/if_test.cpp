// if in its forms: comparisons, exist, errorlevel, defined, expressions,
// else behind a group, and its syntax errors, end to end through ombc.exe.
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace {

TEST(If, ComparisonsTextAndNumeric)
{
    struct Case {
        const char* condition;
        bool truth;
    } cases[] = {
        {"a==a", true},
        {"a==b", false},
        {"\"a b\"==\"a b\"", true},
        {"\"\"==\"\"", true}, // quotes make an operand even around nothing
        {"\"a\"==\"\"", false},
        {"\"\" lss a", true},
        {"a == a", true}, // blanks around the operator are trimmed
        {"01==1", false}, // == is always text
        {"01 equ 1", true},
        {"0x10 equ 16", true},
        {"010 equ 8", true},
        {"10 gtr 9", true},
        {"10 gtr 9a", false}, // textual: "1" sorts before "9"
        {"9 lss 10", true},
        {"b lss a", false},
        {"a leq a", true},
        {"5 geq 6", false},
        {"5 neq 6", true},
        {"abc EQU abc", true},
        {"/i a==A", true},
        {"a==A", false},
        {"not a==b", true},
        {"not 3 gtr 2", false},
        {"-1 lss 1", true},
        {"9223372036854775807 gtr -1", false}, // the difference wraps around in 64 bits
    };
    for (const Case& c : cases) {
        std::string line = std::string("if ") + c.condition + " echo yes\n";
        EXPECT_EQ(TypedOutput(line), c.truth ? L"yes\n" : L"") << line;
    }
    EXPECT_EQ(TypedOutput("if \"%nosuch%\"==\"\" echo unset\n"), L"unset\n");
    // "not /i" is not the switch: the left operand is the text "/i a".
    EXPECT_EQ(TypedOutput("if not /i a==A echo y\n"), L"y\n");
    // Without else behind a group, the rest is one statement.
    EXPECT_EQ(TypedOutput("if a==a echo x else echo y\n"), L"x else echo y\n");
}

TEST(If, ElseBehindAGroupAndNestedIfs)
{
    EXPECT_EQ(TypedOutput("if a==a (echo one) else (echo two)\n"), L"one\n");
    EXPECT_EQ(TypedOutput("if a==b (echo one) else (echo two)\n"), L"two\n");
    EXPECT_EQ(TypedOutput("if a==b (echo one) else echo two & echo three\n"), L"two\nthree\n");
    EXPECT_EQ(TypedOutput("if a==b (echo one) elsenosuch\n"), L"Bad command or file name\n\n");
    EXPECT_EQ(TypedOutput("if a==a (if b==b (echo inner) else (echo no)) else (echo outer no)\n"), L"inner\n");
    EXPECT_EQ(TypedOutput("if a==a (if b==c (echo no) else (echo inner else)) else (echo outer no)\n"),
              L"inner else\n");
    EXPECT_EQ(TypedOutput("if a==a @echo at sign dropped\n"), L"at sign dropped\n");

    TempFolder f;
    f.WriteBytes(L"nest.bat", "@echo off\r\n"
                              "if a==a (\r\n"
                              "  echo first\r\n"
                              "  if 1 lss 2 (\r\n"
                              "    echo second\r\n"
                              "  ) else (\r\n"
                              "    echo not this\r\n"
                              "  )\r\n"
                              ") else (\r\n"
                              "  echo nor this\r\n"
                              ")\r\n"
                              "echo done\r\n");
    EXPECT_EQ(JoinLines(RunOmbcIn(f.Path(), L"/C nest.bat").Output), L"first\nsecond\ndone\n");
}

TEST(If, ErrorlevelAfterBuiltinsAndFalseConditionsResetIt)
{
    EXPECT_EQ(TypedOutput("nosuch\nif errorlevel 1 echo one\nif errorlevel 2 echo two\n"),
              L"Bad command or file name\n\none\n");
    EXPECT_EQ(TypedOutput("if errorlevel 0 echo always\n"), L"always\n");
    EXPECT_EQ(TypedOutput("if errorlevel x echo never\n"), L"");
    // A false condition ends the statement with level 0; a true one keeps
    // what its statement did.
    OmbcResult r = RunOmbc(L"", "nosuch\nif a==b echo no\n");
    EXPECT_EQ(r.ExitCode, 0);
    r = RunOmbc(L"", "if a==a nosuch\n");
    EXPECT_EQ(r.ExitCode, 1);
    r = RunOmbc(L"", "nosuch\nif a==a rem\n");
    EXPECT_EQ(r.ExitCode, 1); // rem keeps the level
}

TEST(If, ExistWithFilesWildcardsAndFolders)
{
    TempFolder f;
    f.WriteBytes(L"here.txt", "x");
    f.WriteBytes(L"has blank.txt", "x");
    CreateDirectoryW((f / L"sub").c_str(), nullptr);
    SetFileAttributesW((f / L"here.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
    std::wstring out = TypedOutput("if exist here.txt echo 1\n"
                             "if exist nofile echo 2\n"
                             "if exist *.txt echo 3\n"
                             "if exist *.none echo 4\n"
                             "if exist sub echo 5\n"
                             "if exist sub\\ echo 6\n"
                             "if exist \"has blank.txt\" echo 7\n"
                             "if not exist nofile echo 8\n"
                             "if exist nofile (echo a) else (echo b)\n",
                             f.Path());
    EXPECT_EQ(out, L"1\n3\n5\n6\n7\n8\nb\n");
}

TEST(If, DefinedCmdextversionAndExpressions)
{
    EXPECT_EQ(TypedOutput("data v\nread\nif defined read echo set\nif defined nosuchvariable echo no\n"), L"set\n");
    EXPECT_EQ(TypedOutput("if cmdextversion 2 echo old\nif cmdextversion 3 echo new\n"), L"old\n");
    EXPECT_EQ(TypedOutput("if (1) echo one\nif (0) echo zero\nif calc (2) echo calc\n"), L"one\ncalc\n");
    // The low 32 bits decide an integer's truth.
    EXPECT_EQ(TypedOutput("if (4294967296) echo never\nif (4294967297) echo low bit\n"), L"low bit\n");
}

TEST(If, SyntaxErrorsRunNothing)
{
    for (const char* line : {"if a==b\n", "if a==a\n", "if a echo x\n", "if ==a echo x\n", "if a==  \n",
                             "if calc 1 echo x\n", "if a==b (echo x) else\n", "if\n", "if not\n",
                             "if existwindow nothing echo x\n"}) {
        EXPECT_EQ(TypedOutput(line), L"Syntax Error\n\n") << line;
    }
    // An expression needs a statement behind it.
    EXPECT_EQ(TypedOutput("if (1)\n"), L"Syntax Error\n\n");
}

} // namespace
