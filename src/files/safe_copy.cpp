#include "files/safe_copy.h"

#include "app/toolkit/omdib.h"
#include "bars/status_bar.h"
#include "screen/screen_store.h"

#include <cwchar>

namespace {

// The block of every copy: one buffer, read into and written from. A whole
// number of pages, so that no write straddles a page of the file; two bytes
// short of that (0x7FFE) made a large copy markedly slower than the
// platform's own under Wine (bench/copy_bench.cpp).
constexpr DWORD kBlockSize = 0x8000;
char Block[kBlockSize];

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// Attributes with which the platform refuses to overwrite a file in place.
// Checked here as well, because under some hosts (Wine run as root) the
// platform itself would not refuse.
constexpr DWORD kUnwritable = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                              FILE_ATTRIBUTE_DIRECTORY;

UniqueFile CreateForWriting(const wchar_t* path)
{
    return UniqueFile(CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
}

// A new, empty temporary file in the destination's directory, so that the
// final rename stays on one volume and cannot fail half-way.
UniqueFile CreateTemporaryBeside(const wchar_t* destination, wchar_t* temporary)
{
    wchar_t directory[kPathMax * 2];
    CopyCutW(directory, destination, kPathMax * 2);
    wchar_t* slash = std::wcsrchr(directory, L'\\');
    if (!slash) slash = std::wcschr(directory, L':');
    if (slash) slash[1] = 0;
    else directory[0] = 0;
    DWORD seed = GetTickCount();
    for (DWORD n = 0; n < 0x10000; ++n) {
        std::swprintf(temporary, kPathMax * 2, L"%ls~omb%04X.tmp", directory, unsigned((seed + n) & 0xFFFF));
        UniqueFile file = CreateForWriting(temporary);
        if (file || GetLastError() != ERROR_FILE_EXISTS) return file;
    }
    SetLastError(ERROR_FILE_EXISTS);
    return UniqueFile();
}

// Copies block by block, counting bytes to the percent indicator; 0 when all was read and written, else the
// platform's code, or ERROR_OPERATION_ABORTED on a break.
DWORD CopyBlocks(HANDLE source, HANDLE destination)
{
    for (;;) {
        DWORD got = 0;
        if (!ReadFile(source, Block, kBlockSize, &got, nullptr)) return GetLastError();
        if (got == 0) return 0;
        DWORD put = 0;
        if (!WriteFile(destination, Block, got, &put, nullptr)) return GetLastError();
        if (put != got) return ERROR_DISK_FULL;
        ProgressAdd(got);
        TheScreen.PollBreak();
        if (TheScreen.BreakFlag) return ERROR_OPERATION_ABORTED;
    }
}

// The data, then the source's last-write time (after the last write, which
// would otherwise move it), then the close, whose failure also counts.
DWORD FillAndClose(HANDLE source, UniqueFile& destination)
{
    DWORD code = CopyBlocks(source, destination.get());
    if (code) return code;
    FILETIME lastWrite;
    if (GetFileTime(source, nullptr, nullptr, &lastWrite)) SetFileTime(destination.get(), nullptr, nullptr, &lastWrite);
    if (!CloseHandle(destination.release())) return GetLastError();
    return 0;
}

CopyOutcome Outcome(DWORD code)
{
    if (code == 0) return {CopyResult::Copied, 0};
    if (code == ERROR_OPERATION_ABORTED && TheScreen.BreakFlag) return {CopyResult::Broken, 0};
    return {CopyResult::Failed, code};
}

CopyOutcome CopyIntoNew(HANDLE source, const wchar_t* destination, UniqueFile file)
{
    DWORD code = FillAndClose(source, file);
    if (code) {
        file.reset();
        DeleteFileW(destination);
    }
    return Outcome(code);
}

CopyOutcome CopyOver(HANDLE source, const wchar_t* destination)
{
    wchar_t temporary[kPathMax * 2];
    UniqueFile file = CreateTemporaryBeside(destination, temporary);
    if (!file) return {CopyResult::CreateFailed, GetLastError()};
    DWORD code = FillAndClose(source, file);
    if (!code && !MoveFileExW(temporary, destination, MOVEFILE_REPLACE_EXISTING)) code = GetLastError();
    if (code) {
        file.reset();
        DeleteFileW(temporary);
    }
    return Outcome(code);
}

} // namespace

FileIdentity IdentityOf(HANDLE file)
{
    BY_HANDLE_FILE_INFORMATION info;
    if (!GetFileInformationByHandle(file, &info)) return {};
    return {info.dwVolumeSerialNumber, info.nFileIndexHigh, info.nFileIndexLow, true};
}

FileIdentity IdentityOfPath(const wchar_t* path)
{
    UniqueFile file(CreateFileW(path, FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return file ? IdentityOf(file.get()) : FileIdentity{};
}

bool SameIdentity(const FileIdentity& a, const FileIdentity& b)
{
    return a.Known && b.Known && a.Volume == b.Volume && a.IndexHigh == b.IndexHigh && a.IndexLow == b.IndexLow;
}

bool CopySource::Open(const wchar_t* path)
{
    file_.reset(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN,
                            nullptr));
    if (!file_) {
        Error = GetLastError();
        return false;
    }
    identity_ = IdentityOf(file_.get());
    return true;
}

DestinationState ProbeDestination(const FileIdentity& source, const wchar_t* destination)
{
    DWORD attributes = GetFileAttributesW(destination);
    if (attributes == INVALID_FILE_ATTRIBUTES) return DestinationState::Missing;
    if (SameIdentity(source, IdentityOfPath(destination))) return DestinationState::SameFile;
    return (attributes & kUnwritable) ? DestinationState::Refused : DestinationState::Present;
}

CopyOutcome CopyInto(HANDLE source, const wchar_t* destination, bool present)
{
    if (!present) {
        UniqueFile file = CreateForWriting(destination);
        if (file) return CopyIntoNew(source, destination, std::move(file));
        // Made by someone else since it was probed: it is overwritten the safe way.
        if (GetLastError() != ERROR_FILE_EXISTS) return {CopyResult::CreateFailed, GetLastError()};
    }
    return CopyOver(source, destination);
}
