#include "exec/run_program.h"

#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "lang/command_args.h"
#include "lang/shell_command.h"

namespace {

const wchar_t* const kBatchSuffixes[] = {L".CMD", L".BAT", L".WBT"};

bool IsFile(const wchar_t* path)
{
    DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::wstring FullPath(const wchar_t* path)
{
    wchar_t full[kPathMax];
    DWORD n = GetFullPathNameW(path, kPathMax, full, nullptr);
    return (n == 0 || n >= kPathMax) ? std::wstring() : std::wstring(full);
}

} // namespace

std::wstring FindBatchProgram(const wchar_t* word)
{
    if (!*word || lstrlenW(word) >= kPathMax - 5) return {};
    wchar_t drive[kPathMax], directory[kPathMax], name[kPathMax], extension[kPathMax];
    FNSplitW(word, drive, directory, name, extension);
    if (extension[0]) {
        for (const wchar_t* suffix : kBatchSuffixes)
            if (lstrcmpiW(extension, suffix) == 0 && IsFile(word)) return FullPath(word);
        return {};
    }
    for (const wchar_t* suffix : kBatchSuffixes) {
        wchar_t candidate[kPathMax];
        FNMergeW(candidate, drive, directory, name, suffix);
        if (IsFile(candidate)) return FullPath(candidate);
    }
    return {};
}

std::wstring RunProgram(BatchProgram*, bool allowBatch)
{
    std::wstring path = FindBatchProgram(CommandArgs.Command);
    if (!path.empty() && allowBatch) return path;
    ReportId(5);
    ErrorLevel = 1;
    return {};
}
