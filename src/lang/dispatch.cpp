#include "lang/dispatch.h"

#include "app/errors.h"
#include "app/help_link.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/shell_command.h"
#include "lang/trace.h"

#include <algorithm>
#include <cwchar>
#include <string>

namespace {

// Sorted by ordinal comparison of the names; a test keeps it so. A row with
// no handler yet stands for a batch program command: outside a batch program
// it already does what it must (message 91, or nothing at all); inside one it
// falls through to program search until its handler exists.
const CommandEntry kCommands[] = {
    {L"ask", CmdAsk, KeepsLevel},
    {L"attrib", CmdAttrib, 0},
    {L"beep", CmdBeep, KeepsLevel},
    {L"box", CmdBox, KeepsLevel},
    {L"calc", CmdCalc, KeepsLevel},
    {L"call", CmdCall, KeepsLevel},
    {L"callproc", CmdCallproc, IgnoredAtPrompt | KeepsLevel},
    {L"capture", CmdCapture, 0},
    {L"cbadd", nullptr, NeedsBatch},
    {L"cbdelete", nullptr, NeedsBatch},
    {L"cbdir", nullptr, NeedsBatch},
    {L"cbfind", nullptr, NeedsBatch},
    {L"cbget", nullptr, NeedsBatch},
    {L"cbinsert", nullptr, NeedsBatch},
    {L"cbset", nullptr, NeedsBatch},
    {L"cbtext", nullptr, NeedsBatch},
    {L"cd", CmdCd, 0},
    {L"cdd", CmdCdd, 0},
    {L"charnext", CmdCharnext, 0},
    {L"charprev", CmdCharprev, 0},
    {L"chcp", CmdChcp, 0},
    {L"chdir", CmdCd, 0},
    {L"check", nullptr, NeedsBatch},
    {L"cls", CmdCls, 0},
    {L"color", CmdColour, 0},
    {L"colour", CmdColour, 0},
    {L"comma", CmdComma, KeepsLevel},
    {L"copy", CmdCopy, 0},
    {L"data", CmdData, KeepsLevel},
    {L"date", CmdDate, 0},
    {L"date2ser", CmdDate2ser, KeepsLevel},
    {L"debug", CmdDebug, 0},
    {L"del", CmdDel, 0},
    {L"delbut", CmdDelbut, 0},
    {L"describe", CmdDescribe, 0},
    {L"dir", CmdDir, 0},
    {L"dirs", CmdDirs, 0},
    {L"disk", CmdDisk, 0},
    {L"diskfree", CmdDiskfree, KeepsLevel},
    {L"diskused", CmdDiskused, KeepsLevel},
    {L"dlgbox", nullptr, NeedsBatch},
    {L"dlgend", nullptr, NeedsBatch},
    {L"dlgendall", nullptr, NeedsBatch},
    {L"dlgitem", nullptr, NeedsBatch},
    {L"dlgmenu", nullptr, NeedsBatch},
    {L"dlgshow", nullptr, NeedsBatch | WaitsForUser},
    {L"do", CmdDo, 0},
    {L"dos", CmdDos, 0},
    {L"dump", CmdDump, 0},
    {L"echo", CmdEcho, KeepsLevel},
    {L"echo.", CmdEchoDot, KeepsLevel},
    {L"enable", nullptr, NeedsBatch},
    {L"end", CmdEnd, KeepsLevel},
    {L"endlocal", CmdEndlocal, KeepsLevel},
    {L"endproc", CmdEndproc, NeedsBatch | KeepsLevel},
    {L"enumreg", CmdEnumreg, KeepsLevel},
    {L"erase", CmdDel, 0},
    {L"exit", CmdExit, 0},
    {L"filedate", CmdFiledate, KeepsLevel},
    {L"filesize", CmdFilesize, KeepsLevel},
    {L"filetime", CmdFiletime, KeepsLevel},
    {L"filetype", CmdFiletype, KeepsLevel},
    {L"findreg", CmdFindreg, 0},
    {L"for", CmdFor, KeepsLevel},
    {L"getfocus", nullptr, NeedsBatch},
    {L"getini", CmdGetini, KeepsLevel},
    {L"getkey", CmdGetkey, KeepsLevel | WaitsForUser},
    {L"getnum", CmdGetnum, KeepsLevel | WaitsForUser},
    {L"getreg", CmdGetreg, KeepsLevel},
    {L"getstr", CmdGetstr, KeepsLevel | WaitsForUser},
    {L"gettext", nullptr, NeedsBatch},
    {L"go", CmdGo, 0},
    {L"gosub", CmdGosub, IgnoredAtPrompt | KeepsLevel},
    {L"goto", CmdGoto, IgnoredAtPrompt | KeepsLevel},
    {L"gray", nullptr, NeedsBatch},
    {L"grey", nullptr, NeedsBatch},
    {L"help", CmdHelp, 0},
    {L"his", CmdHistory, 0},
    {L"history", CmdHistory, 0},
    {L"if", CmdIf, 0},
    {L"ischecked", nullptr, NeedsBatch},
    {L"isenabled", nullptr, NeedsBatch},
    {L"isgrayed", nullptr, NeedsBatch},
    {L"isgreyed", nullptr, NeedsBatch},
    {L"isticked", nullptr, NeedsBatch},
    {L"label", CmdLabel, 0},
    {L"lbadd", nullptr, NeedsBatch},
    {L"lbdelete", nullptr, NeedsBatch},
    {L"lbdir", nullptr, NeedsBatch},
    {L"lbfind", nullptr, NeedsBatch},
    {L"lbget", nullptr, NeedsBatch},
    {L"lbinsert", nullptr, NeedsBatch},
    {L"lbset", nullptr, NeedsBatch},
    {L"lbtext", nullptr, NeedsBatch},
    {L"let", CmdLet, KeepsLevel},
    {L"locate", CmdLocate, KeepsLevel},
    {L"lower", CmdLower, KeepsLevel},
    {L"md", CmdMd, 0},
    {L"mem", CmdMem, 0},
    {L"mkdir", CmdMd, 0},
    {L"more", CmdMore, KeepsLevel},
    {L"move", CmdMove, 0},
    {L"page", CmdPage, 0},
    {L"parse", CmdParse, KeepsLevel},
    {L"path", CmdPath, 0},
    {L"pause", CmdPause, KeepsLevel | WaitsForUser},
    {L"popd", CmdPopd, 0},
    {L"proc", CmdProc, NeedsBatch | KeepsLevel},
    {L"prompt", CmdPrompt, 0},
    {L"pushd", CmdPushd, 0},
    {L"radio", nullptr, NeedsBatch},
    {L"rd", CmdRd, 0},
    {L"read", CmdRead, KeepsLevel},
    {L"readln", CmdReadln, KeepsLevel},
    {L"rem", CmdRem, KeepsLevel},
    {L"ren", CmdRen, 0},
    {L"rename", CmdRen, 0},
    {L"return", CmdReturn, IgnoredAtPrompt | KeepsLevel},
    {L"rmdir", CmdRd, 0},
    {L"say", CmdSay, KeepsLevel},
    {L"scopy", CmdScopy, 0},
    {L"seed", CmdSeed, KeepsLevel},
    {L"ser2date", CmdSer2date, KeepsLevel},
    {L"set", CmdSet, KeepsLevel},
    {L"setfocus", nullptr, NeedsBatch},
    {L"setini", CmdSetini, KeepsLevel},
    {L"setlocal", CmdSetlocal, KeepsLevel},
    {L"setreg", CmdSetreg, KeepsLevel},
    {L"settext", nullptr, NeedsBatch},
    {L"shift", CmdShift, IgnoredAtPrompt | KeepsLevel},
    {L"sleep", CmdSleep, KeepsLevel},
    {L"smove", CmdSmove, 0},
    {L"start", CmdStart, KeepsLevel},
    {L"stop", CmdStop, IgnoredAtPrompt | KeepsLevel},
    {L"strfind", CmdStrfind, KeepsLevel},
    {L"strfold", CmdStrfold, KeepsLevel},
    {L"strpad", CmdStrpad, KeepsLevel},
    {L"strrep", CmdStrrep, KeepsLevel},
    {L"strrev", CmdStrrev, KeepsLevel},
    {L"strrfind", CmdStrrfind, KeepsLevel},
    {L"strsize", CmdStrsize, KeepsLevel},
    {L"strsplit", CmdStrsplit, KeepsLevel},
    {L"strtrim", CmdStrtrim, KeepsLevel},
    {L"substr", CmdSubstr, KeepsLevel},
    {L"tasks", CmdTasks, 0},
    {L"tick", nullptr, NeedsBatch},
    {L"time", CmdTime, 0},
    {L"timer", CmdTimer, 0},
    {L"tips", CmdTips, 0},
    {L"trace", CmdTrace, KeepsLevel},
    {L"tree", CmdTree, 0},
    {L"type", CmdType, 0},
    {L"until", CmdUntil, 0},
    {L"upper", CmdUpper, KeepsLevel},
    {L"ver", CmdVer, 0},
    {L"verify", CmdVerify, 0},
    {L"vol", CmdVol, 0},
    {L"where", CmdWhere, 0},
    {L"which", CmdWhich, 0},
    {L"while", CmdWhile, 0},
    {L"xset", CmdXset, KeepsLevel},
};

// What help and command completion offer. "modules" names no command and
// "until" is never reached: both users walk only the first 147 names.
const wchar_t* const kHelpNames[] = {
    L"about",    L"acs",      L"attrib",   L"arch",     L"cd",       L"cdd",      L"chdir",    L"cls",
    L"copy",     L"colour",   L"date",     L"delbut",   L"del",      L"dir",      L"stop",     L"dos",
    L"dump",     L"erase",    L"exit",     L"which",    L"ext",      L"extension", L"go",      L"group",
    L"help",     L"his",      L"history",  L"macro",    L"mem",      L"diskused", L"md",       L"mkdir",
    L"page",     L"move",     L"path",     L"prompt",   L"ren",      L"rename",   L"rd",       L"diskfree",
    L"rmdir",    L"tasks",    L"time",     L"tree",     L"type",     L"ver",      L"verify",   L"vol",
    L"where",    L"disk",     L"set",      L"call",     L"echo",     L"for",      L"goto",     L"if",
    L"pause",    L"rem",      L"shift",    L"ask",      L"box",      L"say",      L"locate",   L"calc",
    L"upper",    L"lower",    L"strsize",  L"parse",    L"substr",   L"getkey",   L"beep",     L"describe",
    L"label",    L"viewicon", L"replace",  L"find",     L"wallpaper", L"modules", L"tips",     L"play",
    L"print",    L"dirs",     L"popd",     L"pushd",    L"scopy",    L"smove",    L"getstr",   L"sleep",
    L"gosub",    L"end",      L"return",   L"sendkeys", L"date2ser", L"ser2date", L"getini",   L"setini",
    L"strpad",   L"comma",    L"readln",   L"filesize", L"filedate", L"filetime", L"filetype", L"shell",
    L"capture",  L"let",      L"data",     L"read",     L"setlocal", L"endlocal", L"getreg",   L"setreg",
    L"findreg",  L"getnum",   L"trace",    L"editbox",  L"msgbox",   L"dispbox",  L"openbox",  L"savebox",
    L"drag",     L"postmsg",  L"clip",     L"clipdisp", L"ddeexec",  L"ddepoke",  L"ddereq",   L"devices",
    L"volume",   L"eject",    L"strfind",  L"strrfind", L"strtrim",  L"strrep",   L"strrev",   L"strsplit",
    L"enumreg",  L"seed",     L"gethttp",  L"sendmail", L"strfold",  L"charnext", L"charprev", L"chcp",
    L"timer",    L"while",    L"do",       L"until",
};
constexpr int kHelpNamesWalked = 147;

// Unit by unit, as wcscmp orders; written out because every statement looks
// its word up.
int CompareNames(const wchar_t* a, const wchar_t* b)
{
    while (*a && *a == *b) {
        ++a;
        ++b;
    }
    return int(*a) - int(*b);
}

bool Precedes(const CommandEntry& a, const CommandEntry& b) { return CompareNames(a.Name, b.Name) < 0; }

bool InHelpList(const wchar_t* word)
{
    for (int i = 0; i < kHelpNamesWalked; ++i)
        if (std::wcscmp(kHelpNames[i], word) == 0) return true;
    return false;
}

} // namespace

std::span<const CommandEntry> CommandTable() { return kCommands; }

std::span<const wchar_t* const> HelpNames() { return kHelpNames; }

std::span<const wchar_t* const> OfferedHelpNames() { return std::span(kHelpNames).first(kHelpNamesWalked); }

const CommandEntry* FindCommand(const wchar_t* word)
{
    // A loop runs one command turn after turn: the last answer is kept.
    static std::wstring lastWord;
    static const CommandEntry* lastEntry = nullptr;
    if (lastEntry && lastWord == word) return lastEntry;
    CommandEntry key{word, nullptr, 0};
    auto it = std::lower_bound(std::begin(kCommands), std::end(kCommands), key, Precedes);
    if (it == std::end(kCommands) || CompareNames(it->Name, word) != 0) return nullptr;
    lastWord = word;
    return lastEntry = &*it;
}

bool DispatchBuiltin(BatchProgram* batch, const wchar_t* word)
{
    const wchar_t* switches = CommandArgs.Switches;
    if (switches[0] == L'?' && switches[1] == 0 && CommandArgs.ArgCount == 0 && InHelpList(word)) {
        HelpLink(HelpKeyword, word);
        return true;
    }
    const CommandEntry* entry = FindCommand(word);
    if (!entry) {
        if (word[0] != L':') return false;
        TheShell.KeepErrorLevel = 1; // a label does nothing
        return true;
    }
    if (!batch && (entry->Flags & (NeedsBatch | IgnoredAtPrompt))) {
        if (entry->Flags & NeedsBatch) ReportId(91);
        else TheShell.KeepErrorLevel = 1;
        return true;
    }
    if (!entry->Handler) return false;
    {
        TraceUserWait wait((entry->Flags & WaitsForUser) != 0);
        entry->Handler();
    }
    if (entry->Flags & KeepsLevel) TheShell.KeepErrorLevel = 1;
    return true;
}
