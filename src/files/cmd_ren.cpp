// ren (rename): renames the files and directories that match a pattern, the
// new names made by the same destination template as copy's, in place. All
// new names are checked before the first rename, so a clash renames nothing;
// a rename never replaces another file. Descriptions follow the new names.
#include "app/errors.h"
#include "files/arg_paths.h"
#include "files/descriptions.h"
#include "files/file_walker.h"
#include "files/safe_copy.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/screen_store.h"

#include <algorithm>
#include <cwchar>
#include <string>
#include <vector>

namespace {

// Files and directories, as long as they are neither hidden nor system.
constexpr DWORD kRenameAllowance = FILE_ATTRIBUTE_DIRECTORY;

struct Rename {
    std::wstring from;
    std::wstring to;
};

// A new name is free when nothing has it, or when it is the entry's own
// file under another case.
bool NameIsFree(const Rename& r)
{
    if (GetFileAttributesW(r.to.c_str()) == INVALID_FILE_ATTRIBUTES) return true;
    return SameIdentity(IdentityOfPath(r.from.c_str()), IdentityOfPath(r.to.c_str()));
}

// The renames to make, or message 7 when two would collide or one would
// replace a file that stands there.
bool PlanRenames(std::vector<Rename>& plan)
{
    for (int i = 0; i < TheWalker.count; ++i) {
        Rename r{TheWalker.EntryPath(i), TheWalker.TargetName(i, false)};
        if (r.from != r.to) plan.push_back(std::move(r));
    }
    std::vector<const std::wstring*> targets;
    for (const Rename& r : plan) targets.push_back(&r.to);
    std::sort(targets.begin(), targets.end(),
              [](const std::wstring* a, const std::wstring* b) { return CompareNames(a->c_str(), b->c_str()) < 0; });
    for (size_t i = 1; i < targets.size(); ++i) {
        if (CompareNames(targets[i - 1]->c_str(), targets[i]->c_str()) == 0) {
            ReportId(7);
            return false;
        }
    }
    for (const Rename& r : plan) {
        if (!NameIsFree(r)) {
            ReportId(7);
            return false;
        }
    }
    return true;
}

// A change of case only goes through a temporary name: some file systems
// (Wine's) take the direct rename for a rename onto itself and keep the case.
bool RenameFile(const Rename& r)
{
    if (CompareNames(r.from.c_str(), r.to.c_str()) != 0) return MoveFileW(r.from.c_str(), r.to.c_str()) != 0;
    std::wstring temporary = r.from + L".~ren";
    if (!MoveFileW(r.from.c_str(), temporary.c_str())) return false;
    if (MoveFileW(temporary.c_str(), r.to.c_str())) return true;
    DWORD code = GetLastError();
    MoveFileW(temporary.c_str(), r.from.c_str());
    SetLastError(code);
    return false;
}

const wchar_t* NameOf(const std::wstring& path)
{
    size_t slash = path.find_last_of(L'\\');
    return path.c_str() + (slash == std::wstring::npos ? 0 : slash + 1);
}

} // namespace

void CmdRen()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount != 2) {
        ReportId(1);
        return;
    }
    if (std::wcspbrk(CommandArgs.Args[1], L":\\/")) {
        ReportId(9);
        return;
    }
    std::wstring pattern = ArgRawPath(1);
    if (pattern.empty() || TheWalker.WalkFiles(pattern.c_str(), kRenameAllowance) != 0) {
        if (!TheScreen.BreakFlag) ReportId(3);
        return;
    }
    if (TheScreen.BreakFlag) return;
    TheWalker.SortByName();
    std::wstring target = pattern;
    SetPathTail(target, CommandArgs.Args[1]);
    TheWalker.SetTarget(target.c_str());
    std::vector<Rename> plan;
    if (!PlanRenames(plan)) return;

    DescriptionStore store;
    store.Load(pattern.c_str());
    for (const Rename& r : plan) {
        TheScreen.PollBreak();
        if (TheScreen.BreakFlag) break;
        if (!RenameFile(r)) {
            TheErrors.ReportPlatformError(GetLastError());
            break;
        }
        std::wstring description = store.Lookup(NameOf(r.from)).description;
        if (description.empty()) continue;
        store.Remove(NameOf(r.from));
        store.Add(NameOf(r.to), description.c_str());
    }
    store.Save();
}
