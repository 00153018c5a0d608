// The message table: every numbered text is reachable by its number and reads
// exactly as written below, typos included, and an error message prints
// exactly its text. The texts here are typed out on their own, so a slip in
// the string table shows as a difference.
#include "app/banner.h"
#include "app/errors.h"
#include "screen/screen_store.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>

namespace {

struct Message {
    int Id;
    const wchar_t* Text;
};

// clang-format off
const Message kMessages[] = {
    {1, L"Invalid number of parameters"},
    {2, L"Invalid switch"},
    {3, L"No such file or directory"},
    {4, L"Out of environment space"},
    {5, L"Bad command or file name"},
    {6, L"Not a Win32 console application"},
    {7, L"Duplicate file name or Permission denied"},
    {8, L"Unable to execute program"},
    {9, L"Invalid parameter"},
    {10, L"Cannot copy multiple files to single file"},
    {11, L"File cannot be copied into itself"},
    {12, L"No such entry"},
    {13, L"Out of memory"},
    {14, L"Too many files"},
    {16, L"Unknown math function"},
    {17, L"Invalid number of parameters for math function"},
    {18, L"Floating point error"},
    {19, L"Nothing to delete"},
    {20, L"Bad or unknown archive format"},
    {21, L"Invalid switch combination"},
    {22, L"Cannot specify destination path"},
    {23, L"Invalid time"},
    {24, L"Invalid date"},
    {25, L"Invalid button"},
    {26, L"Invalid button image"},
    {27, L"Button text missing"},
    {28, L"No buttons"},
    {29, L"Request denied"},
    {30, L"Unable to display Status Bar"},
    {31, L"No such label"},
    {32, L"Syntax Error"},
    {33, L"Unable to delete description"},
    {34, L"Unable to describe file"},
    {35, L"Unable to redirect"},
    {36, L"Unexpected type"},
    {37, L"Divide by zero"},
    {38, L"Right bracket missing"},
    {39, L"No icons found"},
    {40, L"Invalid file offset"},
    {41, L"Printer not installed"},
    {42, L"No timers"},
    {43, L"Return without gosub"},
    {44, L"Too many nested gosub's"},
    {45, L"Unable to get shell"},
    {46, L"Not a text file"},
    {47, L"Feature unavailable"},
    {48, L"Executable not found"},
    {49, L"Out of range"},
    {50, L"Evaluates to a non-number"},
    {51, L"Permission denied"},
    {52, L"No such program"},
    {53, L"No such window"},
    {54, L"Right brace missing"},
    {55, L"Invalid Key"},
    {56, L"Invalid reference count"},
    {57, L"Too many keys"},
    {58, L"Unable to send keys"},
    {59, L"Line to long"},
    {60, L"No such key or variable"},
    {61, L"Key variable type not supported"},
    {62, L"Key value to long"},
    {63, L"No such key or variable or permission denied"},
    {64, L"Not supported by Win32s"},
    {65, L"No such batch program"},
    {66, L"Clipboard busy"},
    {67, L"Unable to set clipboard contents"},
    {68, L"Channel not established"},
    {69, L"Request denied"},
    {70, L"Not supported by audio device"},
    {71, L"Unable to get or set volume"},
    {72, L"No audio device"},
    {73, L"No such dialog window"},
    {74, L"Dialog window not active"},
    {75, L"Dialog window already exists"},
    {76, L"No such parent dialog window"},
    {77, L"Listbox or Combobox error"},
    {78, L"Dialog window already active"},
    {79, L"Batch command only"},
    {80, L"Unable to end dialog window"},
    {81, L"Unable to set text"},
    {82, L"Unable to get focus"},
    {83, L"Unable to check button"},
    {84, L"No such procedure"},
    {85, L"End of procedure not found"},
    {86, L"Too many nested procedures"},
    {87, L"Misplaced procedure"},
    {88, L"Misplaced end of procedure"},
    {89, L"Invalid menu item type"},
    {90, L"Invalid dialog item type"},
    {91, L"Batch program command"},
    {92, L"Dialog contains no menu"},
    {93, L"No such menu item"},
    {94, L"No such printer"},
    {95, L"Percentage followed by a single letter is expected"},
    {96, L"Invalid option"},
    {97, L"IN or IS keyword expected"},
    {98, L"Open bracket expected"},
    {99, L"Close bracket expected"},
    {100, L"DO keyword expected"},
    {101, L"TO keyword expected"},
    {102, L"Start number expected"},
    {103, L"Finish number expected"},
    {104, L"Step number expected"},
    {105, L"Sendmail Failed"},
    {106, L"Sendmail not available"},
    {107, L"Web server not found"},
    {108, L"Unable to connect to the internet"},
    {109, L"Can not re-enable WOW64 file system redirection"},
    {110, L"Can not disable WOW64 file system redirection"},
    {111, L"Not supported by operating system"},
    {112, L"Unable to En/Decrypt file or directory"},
    {113, L"Unable to Un/Compress file or directory"},
    {114, L"Code page is not available"},
    {115, L"WHILE or UNITL keyword expected"},
    {220, L"File or path name"},
    {221, L"Highlighted file or path name"},
    {222, L"Number"},
    {223, L"Plain text"},
    {224, L"Highlighted text"},
    {225, L"Bold text"},
    {226, L"Environment name"},
    {227, L"Environment string"},
    {228, L"Error message"},
    {229, L"LHS of equal sign"},
    {230, L"Highlighted LHS of equal sign"},
    {231, L"RHS of equal sign"},
    {232, L"File date"},
    {233, L"File time"},
    {234, L"File attribute"},
    {235, L"File description"},
    {236, L"Background"},
    {240, L"Default"},
    {241, L"High Contrast"},
    {242, L"Emerald Forest"},
    {243, L"Ice"},
    {244, L"Ocean"},
    {245, L"Sun Set"},
    {246, L"Metallic"},
    {247, L"Black on White"},
    {248, L"White on Black"},
    {249, L"Grey on Black"},
    {306, L"Unable to save button image!"},
    {309, L"Unable to save the clipboard bitmap to the file!"},
    {310, L"Unable to save the clipboard contents to the file!"},
    {311, L"Unable to load the bitmap into the clipboard!"},
    {312, L"Unable to load the contents of the file into the clipboard!"},
    {313, L"Clipboard contains no known data formats!"},
    {314, L"The selected font is already included as an additional font!"},
    {316, L"Out of Memory!"},
    {317, L"Unable to save the clipboard text to the file!"},
    {318, L"Unable to load the text into the clipboard!"},
    {319, L"Ombrel® needs to be restarted in order for the changes to the fonts used by Ombrel® to take effect!"},
    {320, L"The selected font is permanently used by Ombrel®!"},
    {321, L"The selected font is not a Terminal type font and can not be used by Ombrel®!"},
    {322, L"256 colours or more are required to edit colours!"},
    {402, L" Character Encoding........ "},
    {403, L" Windows Directory......... "},
    {404, L" Run-As Privileges......... "},
    {405, L" Free System Memory........ "},
    {408, L" Display Capability........ "},
    {500, L"Restore the active window to its previous size"},
    {501, L"Move the active window to a new place on the desktop"},
    {502, L"Change the size of the active window"},
    {503, L"Reduce the active window to an icon"},
    {504, L"Enlarge the active window to its largest size"},
    {505, L"Close the active window"},
    {506, L"Open the Task Manager"},
    {507, L"Manipulate Ombrel attributes"},
    {508, L"Manipulate the Clipboard"},
    {509, L"Display all program groups or folders"},
    {510, L"Manipulate the button bar"},
    {511, L"Manipulate the drive bar"},
    {512, L"Manipulate the status bar"},
    {513, L"Add or remove button images"},
    {514, L"Change an existing button in the button bar"},
    {515, L"Add a new button to the button bar"},
    {516, L"Remove an existing button from the button bar"},
    {517, L"Display the command line for each button on the button bar"},
    {518, L"Change system configuration and initialization files"},
    {519, L"Show or hide the status bar"},
    {520, L"Place a copy of the selected text in the Clipboard"},
    {521, L"Insert text from the Clipboard at the cursor"},
    {524, L"Switch keeping the status bar on top of all other windows on or off"},
    {526, L"Place a copy of the contents of a file into the Clipboard"},
    {527, L"Place a copy of the contents of the Clipboard into a file"},
    {528, L"Empty the Clipboard"},
    {531, L"Show or hide the button bar"},
    {532, L"Show or hide the drive bar"},
    {533, L"Re-sample all disk drives and update the drive bar"},
    {534, L"Show small or large icons"},
    {539, L"Switch displaying the button text on or off"},
    {600, L"Ombrel takes its name from the umbrella: one shell\n"
         L"     held over all of your programs, files and\n"
         L"     commands, in one window.\n"},
    {601, L"Need more help? Press the  Help button or use the\n"
         L"     HELP command.  For example,  enter at the  Ombrel\n"
         L"     prompt :-\n"
         L"\n"
         L"                        HELP UNZIP\n"
         L"\n"
         L"     To display the help page for the external command\n"
         L"     UNZIP.\n"},
    {602, L"Programs  that  use  Ombrel  for there input  and\n"
         L"     output are  called  external commands.  To  write\n"
         L"     your  own  external commands,  see the  OMIO help\n"
         L"     file. Press the green Help button, then press the\n"
         L"     Omio Help button.\n"},
    {603, L"The Status Bar is a convenient way to display the\n"
         L"     current time,  the amount  of  free system memory\n"
         L"     and the percent indicator.  The percent indicator\n"
         L"     displays  how much a command is  done. To display\n"
         L"     the status bar,  open the  System Menu and select\n"
         L"     the Status Bar item.\n"},
    {604, L"Need to locate a  file or  files?  Use the  WHERE\n"
         L"     command  to  search  the  current drive  and  all\n"
         L"     non-removable drives.\n"},
    {605, L"Need to view filenames inside  ZIP, LZH, ARJ  and\n"
         L"     ARC  compressed  archive files?  Use the  ARCH /V\n"
         L"     command.\n"},
    {606, L"Are you familiar with UNIX? Try the UNIX look and\n"
         L"     feel option.  Open the System Menu and select the\n"
         L"     Attributes  item and  then  select the  Misc tab.\n"
         L"     Once enabled,  '-'  is used for  command switches\n"
         L"     and '/' is used for directory separators.\n"},
    {607, L"Ombrel  supports   file  extension  associations,\n"
         L"     which  allows  a  file  to  be  associated  to  a\n"
         L"     program,  so that,  when  only  the  filename  is\n"
         L"     entered  at the  Ombrel  prompt,  the  respective\n"
         L"     program  is  automatically  executed,   with  the\n"
         L"     filename passed as a parameter. Use the EXTENSION\n"
         L"     command to manipulate file associations.\n"},
    {608, L"Windows  already  includes  many  file  extension\n"
         L"     associations,  so that, you can simply enter only\n"
         L"     the  filename  at  the   Ombrel  prompt  and  the\n"
         L"     respective  program  will be  executed.  Use  the\n"
         L"     EXTENSION  command  to  manipulate  associations.\n"},
    {609, L"Why not add your  frequently run programs  to the\n"
         L"     button  bar.  Enter  HELP BUTTON  at  the  Ombrel\n"
         L"     prompt,  for more information on how to  add your\n"
         L"     own buttons.\n"},
    {610, L"Looked  in  the  System  Menu?  The  System  Menu\n"
         L"     contains many added options!\n"},
    {611, L"To  change directory,  you can use the  CD or CDD\n"
         L"     commands.  Alternatively,  you can just enter the\n"
         L"     directory at the Ombrel prompt, without using the\n"
         L"     CD or CDD commands.\n"},
    {612, L"Ombrel supports command grouping, using brackets.\n"
         L"     Command grouping  allows more then one command to\n"
         L"     be specified,  where only one command is allowed.\n"
         L"     See the  Command Grouping  section in the  Ombrel\n"
         L"     help file.\n"},
    {613, L"Ombrel also supports braces for command grouping.\n"
         L"     Using   braces  instead of  brackets  delays  the\n"
         L"     instantiation  of  environment  variables  giving\n"
         L"     them  local  scope.   See  the  Command  Grouping\n"
         L"     section in the Ombrel help file.\n"},
    {614, L"IF commands can evaluate expressions, giving them\n"
         L"     the  flexabilty  found  in high level  langauges,\n"
         L"     such as C and C++.  See  Command IF in the Ombrel\n"
         L"     help file.\n"},
    {615, L"Ombrel  supports  pseudo  file  and  command name\n"
         L"     completion. Use the TAB key to complete a file or\n"
         L"     command name that is being entering at the Ombrel\n"
         L"     prompt.  For  more information  on using the  TAB\n"
         L"     key,  see the  Command Line Edit Keys  section in\n"
         L"     the Ombrel help file.\n"},
    {616, L"File descriptions  are an easy way to give a file\n"
         L"     a   BBS  style   text  description,   up  to  128\n"
         L"     characters.   Use   the   DESCRIBE   command   to\n"
         L"     manipulate  file descriptions and the DIR command\n"
         L"     to display them.\n"},
    {617, L"When a program is launched from the Ombrel prompt\n"
         L"     the prompt will not be returned until the program\n"
         L"     has completed execution.  However, you may switch\n"
         L"     back to the Ombrel window and press the  CTRL and\n"
         L"     Z keys  (ie. '^Z')  to return the  Ombrel prompt,\n"
         L"     before  the  program has completed executing,  so\n"
         L"     that, you may do something else.\n"},
    {618, L"Ombrel  supports a  command line  history,  which\n"
         L"     stores  the  last  256 commands  entered  at  the\n"
         L"     Ombrel prompt.  Use the UP and DOWN arrow keys to\n"
         L"     scroll through your command history.\n"},
    {619, L"To find out what's new in this version of Ombrel,\n"
         L"     read the  New in this Version section in the main\r\n"
         L"     Ombrel help file.\n"},
    {620, L"Sick  and tired  of these  tips?  Enter  TIPS OFF\n"
         L"     at the Ombrel prompt.\n"},
};
// clang-format on

std::wstring LoadText(int id)
{
    wchar_t buffer[2048];
    int n = LoadStringW(GetModuleHandleW(nullptr), UINT(id), buffer, 2048);
    return std::wstring(buffer, size_t(n > 0 ? n : 0));
}

TEST(MessageTable, EveryNumberHoldsExactlyItsText)
{
    for (const Message& message : kMessages) EXPECT_EQ(LoadText(message.Id), message.Text) << "message " << message.Id;
}

TEST(MessageTable, NumbersOutsideTheTableHoldNothing)
{
    std::set<int> present;
    for (const Message& message : kMessages) present.insert(message.Id);
    // The ranges the table uses, and a margin around them.
    for (int id = 0; id <= 700; ++id) {
        if (present.count(id)) continue;
        EXPECT_EQ(LoadText(id), L"") << "message " << id;
    }
}

TEST(MessageTable, EachErrorMessagePrintsExactlyItsText)
{
    for (const Message& message : kMessages) {
        if (message.Id > 115) continue;
        TheScreen.ClearScreen();
        TheScreen.BreakFlag = 0;
        TheErrors.ErrorFlag = 0;
        ReportId(message.Id);
        EXPECT_EQ(TheScreen.RowText(0), message.Text) << "message " << message.Id;
        EXPECT_EQ(TheScreen.RowText(1), L"") << "message " << message.Id;
        EXPECT_EQ(TheScreen.CursorY, 2) << "message " << message.Id;
        EXPECT_STREQ(TheErrors.ErrorText(), message.Text);
        EXPECT_EQ(TheErrors.ErrorFlag, 1);
        EXPECT_EQ(TheScreen.BreakFlag, 1);
    }
    TheScreen.BreakFlag = 0;
    TheErrors.ErrorFlag = 0;
}

// The banner prints a tip as the table breaks it: "Tip: " before the first
// line, a line end for each line feed.
TEST(MessageTable, EachTipPrintsInTheLinesOfTheTable)
{
    for (const Message& message : kMessages) {
        if (message.Id < 600) continue;
        TheScreen.ClearScreen();
        TheScreen.BreakFlag = 0;
        PrintTip(message.Id);
        std::wstring text = std::wstring(L"Tip: ") + message.Text;
        int row = 0;
        for (size_t start = 0, end; (end = text.find(L'\n', start)) != std::wstring::npos; start = end + 1, ++row) {
            std::wstring line = text.substr(start, end - start);
            if (!line.empty() && line.back() == L'\r') line.pop_back();
            line.resize(line.find_last_not_of(L' ') + 1);
            EXPECT_EQ(TheScreen.RowText(row), line) << "tip " << message.Id << " row " << row;
        }
        EXPECT_EQ(TheScreen.CursorY, row) << "tip " << message.Id;
        EXPECT_EQ(TheScreen.CursorX, 0) << "tip " << message.Id;
    }
}

} // namespace
