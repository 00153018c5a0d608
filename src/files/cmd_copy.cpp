// copy, move, scopy and smove: one implementation with a mode. The source
// pattern is walked, every destination name is made from the destination
// template and checked before any file is touched, then each file is copied
// by the safe engine (safe_copy.h), its description carried along, and a
// move deletes its source only once the destination is complete and closed.
// The s-forms ask before they overwrite.
#include "app/errors.h"
#include "app/event_pump.h"
#include "bars/status_bar.h"
#include "files/arg_paths.h"
#include "files/copy_question.h"
#include "files/descriptions.h"
#include "files/dir_layout.h"
#include "files/file_delete.h"
#include "files/file_walker.h"
#include "files/safe_copy.h"
#include "files/switch_reader.h"
#include "input/unix_mode.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <cwchar>
#include <string>

namespace {

enum CopyMode { ModeCopy = 0, ModeMove = 1, ModeSafeCopy = 2, ModeSafeMove = 3 };

struct CopyOptions {
    int overwriteAll = 0;
    int mode = ModeCopy;
    int quiet = 0;
    int useShortNames = 0;
    std::wstring destination;
};

bool Asks(const CopyOptions& o) { return o.mode == ModeSafeCopy || o.mode == ModeSafeMove; }
bool Moves(const CopyOptions& o) { return o.mode == ModeMove || o.mode == ModeSafeMove; }

// /a /b /v (accepted, meaning nothing), /n, and /q outside the s-forms.
bool ReadCopySwitches(CopyOptions& o)
{
    SwitchReader reader(CommandArgs.Switches);
    for (wchar_t letter = reader.Next(); letter; letter = reader.Next()) {
        if (letter == L'a' || letter == L'b' || letter == L'v') continue;
        if (letter == L'n') o.useShortNames = 1;
        else if (letter == L'q' && !Asks(o)) o.quiet = 1;
        else {
            ReportId(2);
            return false;
        }
    }
    return true;
}

const wchar_t* NameOf(const wchar_t* path)
{
    const wchar_t* slash = std::wcsrchr(path, L'\\');
    return slash ? slash + 1 : path;
}

// Both stores work on one image when source and destination are one
// directory, so that writing one back cannot undo the other's change.
bool SameDirectory(const std::wstring& a, const std::wstring& b)
{
    std::wstring first = TreeDirectory(a), second = TreeDirectory(b);
    if (CompareNames(first.c_str(), second.c_str()) == 0) return true;
    return SameIdentity(IdentityOfPath((first + L"\\").c_str()), IdentityOfPath((second + L"\\").c_str()));
}

// Message 10 or 11 before anything is written: several files to one name, a
// destination that is its own source by name, or by identity under another
// name (a hard link, a short name, another drive letter).
bool CheckDestinations(const CopyOptions& o)
{
    if (TheWalker.count > 1 && !std::wcschr(TheWalker.targetTemplate, L'*')) {
        ReportId(10);
        return false;
    }
    for (int i = 0; i < TheWalker.count; ++i) {
        std::wstring source = TheWalker.EntryPath(i);
        const wchar_t* target = TheWalker.TargetName(i, o.useShortNames != 0);
        if (CompareNames(target, source.c_str()) == 0 ||
            (GetFileAttributesW(target) != INVALID_FILE_ATTRIBUTES &&
             SameIdentity(IdentityOfPath(source.c_str()), IdentityOfPath(target)))) {
            ReportId(11);
            return false;
        }
    }
    return true;
}

void WriteListName(const wchar_t* name)
{
    wchar_t laidOut[kPathMax + 13];
    FormatListName(name, laidOut);
    UseItem(Item::FileName);
    TheScreen.Write(laidOut);
}

void WriteDescriptionLine(const std::wstring& description)
{
    TheScreen.Write(L"  ");
    WriteDescription(description.c_str());
    TheScreen.NewLine();
}

struct Stores {
    DescriptionStore source;
    DescriptionStore separate;
    DescriptionStore* destination = &separate;
};

enum class FileResult { Done, Skipped, Stop };

// The listing line, and in the s-forms the question before an overwrite,
// whose answer may give the destination a new name (and state).
FileResult Announce(CopyOptions& o, const CopySource& input, std::wstring& target, const wchar_t* sourceName,
                    const std::wstring& description, DestinationState& state)
{
    if (!Asks(o)) {
        if (!o.quiet) {
            WriteListName(sourceName);
            WriteDescriptionLine(description);
        }
        return FileResult::Done;
    }
    WriteListName(NameOf(target.c_str()));
    if (state == DestinationState::Missing || o.overwriteAll) {
        WriteDescriptionLine(description);
        return FileResult::Done;
    }
    switch (AskOverwrite(o.overwriteAll, target)) {
    case OverwriteAnswer::Skip: return FileResult::Skipped;
    case OverwriteAnswer::Stop: return FileResult::Stop;
    case OverwriteAnswer::Renamed: state = ProbeDestination(input.Identity(), target.c_str()); break;
    case OverwriteAnswer::Overwrite: break;
    }
    return FileResult::Done;
}

// The copy itself, its failures reported; false to stop the command.
bool CopyData(const CopyOptions& o, const CopySource& input, const std::wstring& target, DestinationState state)
{
    if (state == DestinationState::SameFile) {
        ReportId(11);
        return false;
    }
    if (state == DestinationState::Refused) {
        TheErrors.ReportPlatformError(ERROR_ACCESS_DENIED);
        return false;
    }
    CopyOutcome outcome = CopyInto(input.Handle(), target.c_str(), state == DestinationState::Present);
    switch (outcome.Result) {
    case CopyResult::Copied: return true;
    case CopyResult::Broken: return false;
    case CopyResult::CreateFailed:
        // The s-forms tried to make a new file where none was.
        if (Asks(o) && state == DestinationState::Missing) ReportId(3);
        else TheErrors.ReportPlatformError(outcome.Error);
        return false;
    case CopyResult::Failed: TheErrors.ReportPlatformError(outcome.Error); return false;
    }
    return false;
}

// One file: the listing or the question, the copy, the description, and for
// a move the deletion of the source once its copy is complete and closed.
FileResult CopyOneFile(CopyOptions& o, Stores& stores, int i)
{
    std::wstring source = TheWalker.EntryPath(i);
    std::wstring target = TheWalker.TargetName(i, o.useShortNames != 0);
    const wchar_t* sourceName = TheWalker.Take(i).cFileName;
    std::wstring description = stores.source.Lookup(sourceName).description;
    {
        CopySource input;
        if (!input.Open(source.c_str())) {
            TheErrors.ReportPlatformError(input.Error);
            return FileResult::Stop;
        }
        DestinationState state = ProbeDestination(input.Identity(), target.c_str());
        if (state == DestinationState::SameFile) {
            ReportId(11);
            return FileResult::Stop;
        }
        FileResult announced = Announce(o, input, target, sourceName, description, state);
        if (announced != FileResult::Done) return announced;
        if (!CopyData(o, input, target, state)) return FileResult::Stop;
    }
    stores.destination->Add(NameOf(target.c_str()), description.c_str());
    // A failed deletion leaves both files and says nothing.
    if (Moves(o) && FileOperationDelete(source.c_str(), false) == 0) stores.source.Remove(sourceName);
    return FileResult::Done;
}

void WriteSummary(const CopyOptions& o, int count)
{
    TheScreen.NewLine();
    UseItem(Item::Number);
    TheScreen.FieldWidth = 5;
    TheScreen.WriteInt(count);
    UseItem(Item::HighText);
    TheScreen.Write(L" file(s)");
    TheScreen.Write(Moves(o) ? L" moved from " : L" copied from ");
    UseItem(Item::FileName);
    TheScreen.Write(UnixDisplayW(CommandArgs.Args[0]));
    UseItem(Item::HighText);
    TheScreen.Write(L" to ");
    UseItem(Item::FileName);
    TheScreen.Write(UnixDisplayW(o.destination.c_str()));
    TheScreen.NewLine();
}

void RunCopy(int mode)
{
    CopyOptions o;
    o.mode = mode;
    if (!ReadCopySwitches(o)) return;
    if (CommandArgs.ArgCount < 1 || CommandArgs.ArgCount > 2) {
        ReportId(1);
        return;
    }
    std::wstring pattern = ArgRawPath(1);
    if (pattern.empty() || TheWalker.WalkFiles(pattern.c_str(), 0) != 0) {
        if (!TheScreen.BreakFlag) ReportId(3);
        return;
    }
    if (TheScreen.BreakFlag) return;
    TheWalker.SortByName();
    o.destination = ArgFullPath(CommandArgs.ArgCount == 2 ? 2 : 0);
    TheWalker.SetTarget(o.destination.c_str());
    if (!CheckDestinations(o)) return;

    TheListing = ListingState{};
    Stores stores;
    stores.source.Load(pattern.c_str());
    if (SameDirectory(pattern, o.destination)) stores.destination = &stores.source;
    else stores.separate.Load(o.destination.c_str());
    ProgressStart(TheWalker.totalBytes);
    bool stopped = false;
    for (int i = 0; i < TheWalker.count && !stopped; ++i)
        stopped = CopyOneFile(o, stores, i) == FileResult::Stop || TheScreen.BreakFlag;
    if (!stopped && !o.quiet) WriteSummary(o, TheWalker.count);
    ProgressEnd();
    if (stores.destination != &stores.source) stores.separate.Save();
    stores.source.Save();
}

} // namespace

void CmdCopy() { RunCopy(ModeCopy); }
void CmdMove() { RunCopy(ModeMove); }
void CmdScopy() { RunCopy(ModeSafeCopy); }
void CmdSmove() { RunCopy(ModeSafeMove); }
