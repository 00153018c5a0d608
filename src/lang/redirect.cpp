#include "lang/redirect.h"

#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"
#include "input/editor.h"
#include "lang/command_args.h"
#include "screen/screen_store.h"

#include <cstring>
#include <cwchar>

namespace {

// A new, empty temporary file for a pipe: the system's folder, else the
// current one, else a name of our own.
std::wstring TemporaryName()
{
    wchar_t folder[kPathMax], name[kPathMax];
    DWORD n = GetTempPathW(kPathMax, folder);
    if (n == 0 || n >= kPathMax) lstrcpyW(folder, L".");
    if (GetTempFileNameW(folder, L"TMP", 0, name) || GetTempFileNameW(L".", L"TMP", 0, name)) return name;
    wchar_t suffix[16];
    ui64tow_ex(uint64_t(GetTickCount()) * 1000u + GetCurrentProcessId() % 1000u, suffix, 10);
    return std::wstring(L"TMP") + (suffix + (lstrlenW(suffix) > 5 ? lstrlenW(suffix) - 5 : 0));
}

// A file name behind an operator: quoted (a doubled quote is one quote), or
// up to a blank, tab, "<", ">", "|" or the end. Returns the end of the name.
wchar_t* ReadName(wchar_t* p, std::wstring& name)
{
    name.clear();
    if (*p == L'"') {
        for (++p; *p; ++p) {
            if (*p == L'"') {
                if (p[1] != L'"') return p + 1;
                ++p;
            }
            name += *p;
        }
        return p;
    }
    for (; *p && !IsWhite(*p) && *p != L'<' && *p != L'>' && *p != L'|'; ++p) name += *p;
    return p;
}

void DeleteRange(wchar_t* from, wchar_t* to) { std::memmove(from, to, (std::wcslen(to) + 1) * sizeof(wchar_t)); }

} // namespace

RedirectionNames ActiveRedirection;

StatementRedirects::~StatementRedirects()
{
    CloseStreams();
    Finish();
    // A pipe file that no stage got to read dies with the statement.
    for (int i = 0; i < count_; ++i)
        if (entries_[i].Flags & RemoveAfter) DeleteFileW(entries_[i].Name.c_str());
}

bool StatementRedirects::Add(int32_t flags, std::wstring name)
{
    if (count_ >= kMaxEntries) {
        failed_ = true;
        return false;
    }
    entries_[count_++] = Entry{flags, std::move(name)};
    return true;
}

int StatementRedirects::Scan(wchar_t* text)
{
    bool found = false, changed = false;
    failed_ = false;
    wchar_t* p = SkipWhiteW(text);
    for (;;) {
        p = p + std::wcscspn(p, L"\"({<>|^");
        wchar_t c = *p;
        if (!c) break;
        if (c == L'"') {
            p = SkipStrW(p + 1);
        } else if (c == L'(' || c == L'{') {
            p = SkipGroupW(p); // redirections inside belong to the group's statements
        } else if (c == L'^') {
            DeleteRange(p, p + 1);
            changed = true;
            if (*p) ++p;
        } else if (c == L'|') {
            wchar_t* rest = SkipWhiteW(p + 1);
            nextStage_ = rest;
            *p = 0;
            Add(Output | PipeFile, TemporaryName());
            CommandArgs.Parse(text);
            return (OpenStreams() && !failed_) ? 1 : -1;
        } else {
            bool append = c == L'>' && p[1] == L'>';
            int32_t flags = c == L'<' ? Input : Output | (append ? Append : 0);
            wchar_t* operand = SkipWhiteW(p + (append ? 2 : 1));
            std::wstring name;
            wchar_t* end = ReadName(operand, name);
            DeleteRange(p, end);
            Add(flags, std::move(name));
            found = true;
        }
    }
    if (found || changed) CommandArgs.Parse(text);
    if (found && !OpenStreams()) failed_ = true;
    return failed_ ? -1 : 0;
}

bool StatementRedirects::OpenOutput(const Entry& entry)
{
    bool append = entry.Flags & Append;
    // A read-only file is never written, whatever rights the process has.
    DWORD attributes = GetFileAttributesW(entry.Name.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)) return false;
    // Opened without truncation: an existing file is emptied only once every
    // stream of the statement has opened.
    HANDLE h = CreateFileW(entry.Name.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                           nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (entry.Name.empty() || h == INVALID_HANDLE_VALUE) {
        if (h != INVALID_HANDLE_VALUE) CloseHandle(h);
        return false;
    }
    createdOutput_ = GetLastError() != ERROR_ALREADY_EXISTS;
    LARGE_INTEGER size{};
    GetFileSizeEx(h, &size);
    appendStart_ = append ? size.QuadPart : 0;
    pendingOutput_ = h;
    return true;
}

bool StatementRedirects::OpenStreams()
{
    appendStart_ = 0;
    createdOutput_ = false;
    const Entry* output = nullptr;
    const Entry* input = nullptr;
    for (int i = 0; i < count_; ++i) {
        if (!output && (entries_[i].Flags & Output)) output = &entries_[i];
        if (!input && (entries_[i].Flags & Input)) input = &entries_[i];
    }
    if (output && !OpenOutput(*output)) return false;
    if (input && !TheEditor.Input.Open(input->Name.c_str())) {
        // The output was not touched yet; a file made just now goes again.
        if (output) {
            CloseHandle(pendingOutput_);
            if (createdOutput_) DeleteFileW(output->Name.c_str());
        }
        pendingOutput_ = nullptr;
        return false;
    }
    if (input) {
        ownsStreams_ = true;
        ActiveRedirection.Input = input->Name;
    }
    if (output) {
        if (!(output->Flags & Append)) SetEndOfFile(pendingOutput_);
        TheScreen.OpenRedirect(pendingOutput_);
        pendingOutput_ = nullptr;
        ownsStreams_ = true;
        ActiveRedirection.Output = output->Name;
        ActiveRedirection.Append = (output->Flags & Append) != 0;
    }
    return true;
}

void StatementRedirects::CloseStreams()
{
    if (!ownsStreams_) return;
    TheScreen.CloseRedirect();
    TheEditor.Input.Close();
    ActiveRedirection = RedirectionNames{};
    ownsStreams_ = false;
}

// Copies the source's new content into a further output: the repeated
// operator makes a tee after the command has run.
void StatementRedirects::CopyToTee(const std::wstring& source, const Entry& target)
{
    UniqueFile from(CreateFileW(source.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_EXISTING, 0, nullptr));
    // A further ">" only overwrites a file that exists, from its start.
    DWORD disposition = (target.Flags & Append) ? OPEN_ALWAYS : OPEN_EXISTING;
    UniqueFile to(CreateFileW(target.Name.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, disposition, 0, nullptr));
    if (!from || !to) {
        failed_ = true;
        return;
    }
    LARGE_INTEGER start{}, zero{};
    start.QuadPart = appendStart_;
    SetFilePointerEx(from.get(), start, nullptr, FILE_BEGIN);
    if (target.Flags & Append) SetFilePointerEx(to.get(), zero, nullptr, FILE_END);
    char chunk[128];
    DWORD got = 0, written = 0;
    while (ReadFile(from.get(), chunk, sizeof(chunk), &got, nullptr) && got > 0)
        if (!WriteFile(to.get(), chunk, got, &written, nullptr) || written != got) {
            failed_ = true;
            return;
        }
}

void StatementRedirects::Finish()
{
    const Entry* source = nullptr;
    for (int i = 0; i < count_; ++i) {
        if (!(entries_[i].Flags & Output)) continue;
        if (!source) source = &entries_[i];
        else CopyToTee(source->Name, entries_[i]);
    }
    Entry survivor;
    bool keep = false;
    for (int i = 0; i < count_; ++i) {
        if (entries_[i].Flags & PipeFile) {
            survivor = Entry{Input | RemoveAfter, entries_[i].Name};
            keep = true;
        } else if (entries_[i].Flags & RemoveAfter) {
            DeleteFileW(entries_[i].Name.c_str());
        }
        entries_[i] = Entry{};
    }
    count_ = 0;
    if (keep) entries_[count_++] = std::move(survivor);
}

int StatementRedirects::NextStage()
{
    CloseStreams();
    Finish();
    CopyCutW(stageText_, nextStage_.c_str(), 4096);
    nextStage_.clear();
    CommandArgs.Parse(stageText_);
    if (!OpenStreams()) return -1;
    return Scan(stageText_);
}
