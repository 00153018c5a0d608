#include "lang/redirect.h"

#include "app/toolkit/omdib.h"
#include "input/editor.h"
#include "lang/command_args.h"
#include "lang/environment_index.h"
#include "screen/screen_store.h"

#include <cstring>
#include <cwchar>

namespace {

// A new, empty temporary file for a pipe: the system's folder, else the
// current one, else a name of our own.
std::wstring TemporaryName()
{
    wchar_t folder[kPathMax], name[kPathMax];
    SyncEnvironment();
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

// Two handles on one file, whatever names led to them.
bool SameFile(HANDLE a, HANDLE b)
{
    BY_HANDLE_FILE_INFORMATION x, y;
    if (!GetFileInformationByHandle(a, &x) || !GetFileInformationByHandle(b, &y)) return false;
    return x.dwVolumeSerialNumber == y.dwVolumeSerialNumber && x.nFileIndexHigh == y.nFileIndexHigh &&
           x.nFileIndexLow == y.nFileIndexLow;
}

int64_t SizeOf(HANDLE file)
{
    LARGE_INTEGER size{};
    return GetFileSizeEx(file, &size) ? size.QuadPart : 0;
}

} // namespace

RedirectionNames ActiveRedirection;

bool MayRedirect(const wchar_t* text)
{
    // Asked of every statement: a plain loop, not a character-set search.
    for (; *text; ++text)
        if (*text == L'<' || *text == L'>' || *text == L'|' || *text == L'^') return true;
    return false;
}

StatementRedirects::~StatementRedirects()
{
    CloseStreams();
    Finish();
    // A pipe file that no stage got to read dies with the statement.
    for (const Entry& entry : entries_)
        if (entry.Flags & (RemoveAfter | PipeFile)) DeleteFileW(entry.Name.c_str());
}

bool StatementRedirects::Add(int32_t flags, std::wstring name)
{
    if (int(entries_.size()) >= kMaxEntries) {
        failed_ = true;
        return false;
    }
    entries_.push_back(Entry{flags, std::move(name)});
    return true;
}

int StatementRedirects::Scan(wchar_t* text)
{
    bool found = false, changed = false;
    failed_ = false;
    opened_ = false;
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
            // A full table refuses the pipe before its file is made.
            if (int(entries_.size()) >= kMaxEntries) failed_ = true;
            if (!failed_) Add(Output | PipeFile, TemporaryName());
            CommandArgs.Parse(text);
            return (!failed_ && OpenStreams()) ? 1 : -1;
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
    if (found && !failed_ && !OpenStreams()) failed_ = true;
    return failed_ ? -1 : 0;
}

// Opens an output without changing it. The first output and every ">>" are
// made when missing; a further ">" is only ever written if it exists.
bool StatementRedirects::OpenOutput(size_t index, OpenedOutput& opened)
{
    const Entry& entry = entries_[index];
    opened.Source = index;
    if (entry.Name.empty()) return false;
    // A read-only file is never written, whatever rights the process has.
    DWORD attributes = GetFileAttributesW(entry.Name.c_str());
    bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (exists && (attributes & FILE_ATTRIBUTE_READONLY)) return false;
    bool first = &opened == &outputs_.front();
    if (!exists && !first && !(entry.Flags & Append)) return true;
    // The command may open the same files itself while it runs.
    opened.File.reset(CreateFileW(entry.Name.c_str(), GENERIC_READ | GENERIC_WRITE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
    opened.Created = opened.File.valid() && GetLastError() != ERROR_ALREADY_EXISTS;
    return opened.File.valid();
}

// A tee target that is the first output, or an earlier target, under another
// name would copy into what it is reading: it is written once.
void StatementRedirects::DropTeeTwins()
{
    for (size_t i = 1; i < outputs_.size(); ++i) {
        if (!outputs_[i].File) continue;
        for (size_t j = 0; j < i; ++j)
            if (outputs_[j].File && SameFile(outputs_[i].File.get(), outputs_[j].File.get())) {
                outputs_[i].File.reset();
                break;
            }
    }
}

// A refused statement leaves no trace: what it made goes again.
void StatementRedirects::AbandonOutputs()
{
    for (OpenedOutput& opened : outputs_) {
        opened.File.reset();
        if (opened.Created) DeleteFileW(entries_[opened.Source].Name.c_str());
    }
    outputs_.clear();
}

bool StatementRedirects::OpenStreams()
{
    appendStart_ = 0;
    outputs_.clear();
    const Entry* input = nullptr;
    for (size_t i = 0; i < entries_.size(); ++i) {
        const Entry& entry = entries_[i];
        if (!input && (entry.Flags & Input)) input = &entry;
        if (!(entry.Flags & Output)) continue;
        outputs_.emplace_back();
        if (!OpenOutput(i, outputs_.back())) {
            AbandonOutputs();
            return false;
        }
    }
    if (input && !TheEditor.Input.Open(input->Name.c_str())) {
        AbandonOutputs();
        return false;
    }
    DropTeeTwins();
    if (input) {
        ownsStreams_ = true;
        ActiveRedirection.Input = input->Name;
    }
    opened_ = true;
    if (outputs_.empty()) return true;
    // Every stream is open: now the first output may be emptied.
    OpenedOutput& first = outputs_.front();
    const Entry& firstEntry = entries_[first.Source];
    if (firstEntry.Flags & Append) appendStart_ = SizeOf(first.File.get());
    else SetEndOfFile(first.File.get());
    TheScreen.OpenRedirect(first.File.release());
    ownsStreams_ = true;
    ActiveRedirection.Output = firstEntry.Name;
    ActiveRedirection.Append = (firstEntry.Flags & Append) != 0;
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

// Copies what the command added to the first output into each further one:
// the repeated operator makes a tee after the command has run. Only what is
// there when the copy starts is copied, so it always ends.
void StatementRedirects::CopyToTees()
{
    if (!opened_ || outputs_.size() < 2) return;
    UniqueFile from(CreateFileW(entries_[outputs_.front().Source].Name.c_str(), GENERIC_READ,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0,
                                nullptr));
    if (!from) return;
    int64_t end = SizeOf(from.get());
    for (size_t i = 1; i < outputs_.size(); ++i) {
        HANDLE to = outputs_[i].File.get();
        if (!outputs_[i].File) continue;
        LARGE_INTEGER start{}, zero{};
        start.QuadPart = appendStart_;
        SetFilePointerEx(from.get(), start, nullptr, FILE_BEGIN);
        // A further ">" overwrites from the start and keeps a longer old tail.
        SetFilePointerEx(to, zero, nullptr, (entries_[outputs_[i].Source].Flags & Append) ? FILE_END : FILE_BEGIN);
        char chunk[128];
        for (int64_t left = end - appendStart_; left > 0;) {
            DWORD got = 0, written = 0;
            DWORD want = DWORD(left < int64_t(sizeof(chunk)) ? left : int64_t(sizeof(chunk)));
            if (!ReadFile(from.get(), chunk, want, &got, nullptr) || got == 0) break;
            if (!WriteFile(to, chunk, got, &written, nullptr) || written != got) break;
            left -= got;
        }
    }
}

void StatementRedirects::Finish()
{
    CopyToTees();
    opened_ = false;
    outputs_.clear();
    // The pipe's file becomes the sole entry: the next stage's input, which
    // dies with it.
    Entry survivor;
    bool keep = false;
    for (Entry& entry : entries_) {
        if (entry.Flags & PipeFile) {
            survivor = Entry{Input | RemoveAfter, std::move(entry.Name)};
            keep = !survivor.Name.empty();
        } else if (entry.Flags & RemoveAfter) {
            DeleteFileW(entry.Name.c_str());
        }
    }
    entries_.clear();
    if (keep) entries_.push_back(std::move(survivor));
}

int StatementRedirects::NextStage()
{
    CloseStreams();
    Finish();
    if (!stageText_) stageText_ = std::make_unique<wchar_t[]>(kLineMax);
    CopyCutW(stageText_.get(), nextStage_.c_str(), kLineMax);
    nextStage_.clear();
    CommandArgs.Parse(stageText_.get());
    if (!OpenStreams()) return -1;
    return Scan(stageText_.get());
}
