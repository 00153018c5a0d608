// The error reporter: where a report prints, what it sets, what a muted or
// missing report does, and how platform errors read.
#include "app/errors.h"
#include "app/toolkit/platform_text.h"
#include "screen/colours.h"
#include "screen/screen_store.h"
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class Reporter : public ::testing::Test {
protected:
    void SetUp() override { Reset(); }
    void TearDown() override { Reset(); }
    static void Reset()
    {
        TheScreen.Attr = 0x0026;
        TheScreen.ClearScreen();
        TheScreen.BreakFlag = 0;
        TheErrors.ErrorFlag = 0;
        ReportMuted = 0;
    }
};

TEST_F(Reporter, AReportStartsAFreshLineAndLeavesOneBlankLine)
{
    TheScreen.Attr = 0x0500 | 38;
    ReportText(L"first problem");
    EXPECT_EQ(TheScreen.RowText(0), L"first problem");
    EXPECT_EQ(TheScreen.RowText(1), L"");
    EXPECT_EQ(TheScreen.CursorY, 2);
    EXPECT_EQ(TheScreen.CursorX, 0);
    // The message takes the Error colour and keeps the background.
    EXPECT_EQ(TheScreen.CellAt(0, 0).Attr, 0x0500 | ItemColour[static_cast<int>(Item::Error)]);
    EXPECT_EQ(TheErrors.ErrorFlag, 1);
    EXPECT_EQ(TheScreen.BreakFlag, 1);

    // Output is being dropped now, yet a second report still reaches the screen.
    TheScreen.WriteCells(L"half a line");
    ReportText(L"second problem");
    EXPECT_EQ(TheScreen.RowText(2), L"half a line");
    EXPECT_EQ(TheScreen.RowText(3), L"second problem");
    EXPECT_EQ(TheScreen.RowText(4), L"");
    EXPECT_EQ(TheScreen.CursorY, 5);
    EXPECT_STREQ(TheErrors.ErrorText(), L"second problem");
}

TEST_F(Reporter, ALongMessageIsKeptCutButPrintedWhole)
{
    std::wstring message;
    for (int i = 0; i < 200; ++i) message += wchar_t(L'a' + i % 26);
    ReportText(message.c_str());
    EXPECT_EQ(std::wstring(TheErrors.ErrorText()), message.substr(0, 127));
    EXPECT_EQ(TheScreen.RowText(0) + TheScreen.RowText(1) + TheScreen.RowText(2), message);
}

TEST_F(Reporter, AMutedReportOnlySetsTheFlags)
{
    ReportMuted = 1;
    ReportId(3);
    EXPECT_EQ(TheScreen.RowText(0), L"");
    EXPECT_EQ(TheScreen.CursorY, 0);
    EXPECT_EQ(TheErrors.ErrorFlag, 1);
    EXPECT_EQ(TheScreen.BreakFlag, 1);
    EXPECT_STREQ(TheErrors.ErrorText(), L"No such file or directory");
}

TEST_F(Reporter, AMissingNumberDoesNothingAtAll)
{
    ReportText(L"kept");
    Reset();
    for (int id : {15, 116, 200, 315, 621, 9999}) {
        ReportId(id);
        EXPECT_EQ(TheErrors.ErrorFlag, 0) << id;
        EXPECT_EQ(TheScreen.BreakFlag, 0) << id;
    }
    EXPECT_EQ(TheScreen.RowText(0), L"");
    EXPECT_STREQ(TheErrors.ErrorText(), L"kept");
}

TEST_F(Reporter, PlatformErrorsReadAsTheRuntimeTexts)
{
    struct Case {
        DWORD Code;
        const wchar_t* Text;
    };
    const Case cases[] = {
        {0, L"Error 0"},
        {ERROR_FILE_NOT_FOUND, L"No such file or directory"},
        {ERROR_PATH_NOT_FOUND, L"No such file or directory"},
        {ERROR_ACCESS_DENIED, L"Permission denied"},
        {ERROR_NOT_ENOUGH_MEMORY, L"Not enough memory"},
        {ERROR_BAD_ENVIRONMENT, L"Arg list too big"},
        {ERROR_WRITE_PROTECT, L"Read-only file system"},
        {ERROR_DISK_FULL, L"No space left on device"},
        {ERROR_ALREADY_EXISTS, L"File already exists"},
        {ERROR_FILENAME_EXCED_RANGE, L"Filename too long"},
        {ERROR_INVALID_FUNCTION, L"Invalid argument"},
        {ERROR_SHARING_VIOLATION, L"Permission denied"},
        {ERROR_BAD_FORMAT, L"Exec format error"},
        {ERROR_NO_MORE_FILES, L"No such file or directory"},
        {ERROR_INVALID_DATA, L"Invalid argument"},
        {1000, L"Invalid argument"},
        {0x10005, L"Permission denied"}, // only the low 16 bits count
    };
    for (const Case& c : cases) {
        SetLastError(c.Code);
        TheErrors.ReportErrno();
        EXPECT_STREQ(TheErrors.ErrorText(), c.Text) << c.Code;
    }
}

TEST_F(Reporter, APlatformErrorIsShownInThePlatformsWords)
{
    std::wstring denied = PlatformErrorText(ERROR_ACCESS_DENIED);
    ASSERT_FALSE(denied.empty());
    TheErrors.ReportPlatformError(ERROR_ACCESS_DENIED);
    EXPECT_EQ(TheScreen.RowText(0), denied);
    EXPECT_EQ(TheScreen.BreakFlag, 1);
    // A code the platform has no words for falls back to the run-time text.
    TheErrors.ReportPlatformError(0x2000FFFF);
    EXPECT_STREQ(TheErrors.ErrorText(), L"Invalid argument");
}

TEST(ReporterEndToEnd, ACommandsErrorEndsItsLineAndOneBlankLineFollows)
{
    OmbcResult result = RunOmbc(L"/C \"tips maybe\"");
    EXPECT_EQ(result.Output, L"Invalid parameter\r\n\r\n");
    EXPECT_EQ(result.ExitCode, 1);
    result = RunOmbc(L"/C \"tips on off\"");
    EXPECT_EQ(result.Output, L"Invalid number of parameters\r\n\r\n");
    result = RunOmbc(L"/C \"tips /x on\"");
    EXPECT_EQ(result.Output, L"Invalid switch\r\n\r\n");
}

} // namespace
