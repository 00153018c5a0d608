// setlocal and endlocal, which save and restore the environment, and data
// and read, an inline list of values.
#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "lang/batch_program.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/environment_index.h"
#include "lang/shell_command.h"
#include "lang/variables.h"

#include <memory>
#include <vector>

namespace {

constexpr size_t kMaxSnapshots = 20;

// Saved environments, one stack for the whole shell.
std::vector<std::vector<wchar_t>> localEnvStack;

// The environment block as setlocal measures it: its length in characters is
// taken as a count of bytes, so the copy holds only the first half of the
// block. Variables in the second half are neither saved nor restored; that is
// how scripts written for this shell have always behaved.
std::vector<wchar_t> CopyEnvironmentHalf()
{
    std::vector<wchar_t> copy;
    SyncEnvironment();
    wchar_t* block = GetEnvironmentStringsW();
    if (!block) return copy;
    size_t characters = 0;
    while (block[characters] || block[characters + 1]) ++characters;
    size_t units = (characters + 2) / 2;
    copy.assign(block, block + units);
    FreeEnvironmentStringsW(block);
    copy.push_back(0); // the cut end; the walk stops here
    copy.push_back(0);
    return copy;
}

// Calls visit(name, value) for each NAME=value string of a copy that does not
// begin with "="; a string cut by the copy's end is taken as it stands.
template <class Visit> void ForEachVariable(const std::vector<wchar_t>& copy, Visit visit)
{
    for (size_t i = 0; i + 1 < copy.size() && copy[i];) {
        std::wstring entry(&copy[i]);
        i += entry.size() + 1;
        size_t equals = entry.find(L'=');
        if (equals == std::wstring::npos || equals == 0) continue;
        visit(entry.substr(0, equals), entry.substr(equals + 1));
    }
}

DataList& CurrentData()
{
    return TheShell.Batch ? TheShell.Batch->Data : TheShell.TopData;
}

} // namespace

void CmdSetlocal()
{
    if (localEnvStack.size() >= kMaxSnapshots) return;
    localEnvStack.push_back(CopyEnvironmentHalf());
}

void CmdEndlocal()
{
    if (localEnvStack.empty()) return;
    std::vector<wchar_t> saved = std::move(localEnvStack.back());
    localEnvStack.pop_back();
    std::vector<wchar_t> current = CopyEnvironmentHalf();
    ForEachVariable(current, [](const std::wstring& name, const std::wstring&) {
        WriteEnvironment(name.c_str(), nullptr);
    });
    ForEachVariable(saved, [](const std::wstring& name, const std::wstring& value) {
        WriteEnvironment(name.c_str(), value.c_str());
    });
}

void CmdData()
{
    DataList& data = CurrentData();
    if (!*SkipWhiteW(CommandArgs.Tail)) {
        data.Items.clear();
        return;
    }
    std::wstring tail = CommandArgs.Tail;
    for (size_t start = 0;;) {
        size_t comma = tail.find(L',', start);
        data.Items.push_back(tail.substr(start, comma == std::wstring::npos ? std::wstring::npos : comma - start));
        if (comma == std::wstring::npos) break;
        start = comma + 1;
    }
}

void CmdRead()
{
    DataList& data = CurrentData();
    if (CommandArgs.ArgCount > 0) {
        const wchar_t* end;
        int64_t index = lstrtoi64W(CommandArgs.Args[0], &end, 0);
        if (*end == 0 && index >= 0 && uint64_t(index) <= data.Items.size()) data.ReadIndex = size_t(index);
        return;
    }
    if (data.ReadIndex >= data.Items.size() || data.Items[data.ReadIndex].empty()) {
        SetVariable(L"READ", nullptr);
        if (data.ReadIndex < data.Items.size()) ++data.ReadIndex;
        return;
    }
    SetVariable(L"READ", data.Items[data.ReadIndex++].c_str());
}
