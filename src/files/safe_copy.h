// Copying the data of one file so that nothing is ever lost.
//
// The source is open before a destination is touched. A destination that
// already exists is compared with the source by identity (volume serial and
// file index), so that no other name of the same file -- a hard link, a short
// name, another case, another drive letter -- can truncate it. A missing
// destination is created new; an existing one is overwritten through a
// temporary file beside it that replaces it only once it is complete and
// closed. A failure or a break leaves the old destination byte for byte as
// it was, and no temporary file behind.
#pragma once

#include "app/toolkit/handles.h"

#include <windows.h>

#include <cstdint>

// Where an open file lives: equal identities are one file, whatever its names.
struct FileIdentity {
    DWORD Volume = 0;
    DWORD IndexHigh = 0;
    DWORD IndexLow = 0;
    bool Known = false;
};

FileIdentity IdentityOf(HANDLE file);
// The identity of what a path names (a file or a directory); unknown when it
// cannot be opened.
FileIdentity IdentityOfPath(const wchar_t* path);
// True only when both identities are known and equal.
bool SameIdentity(const FileIdentity& a, const FileIdentity& b);

// A file opened for copying: reading, sharing reads.
class CopySource {
public:
    // False with the platform's code in Error.
    bool Open(const wchar_t* path);
    HANDLE Handle() const { return file_.get(); }
    const FileIdentity& Identity() const { return identity_; }
    DWORD Error = 0;

private:
    UniqueFile file_;
    FileIdentity identity_;
};

enum class DestinationState {
    Missing,  // nothing by that name
    Present,  // a file that may be overwritten
    SameFile, // the source itself under another name
    Refused,  // read-only, hidden, system or a directory: the platform would refuse
};

DestinationState ProbeDestination(const FileIdentity& source, const wchar_t* destination);

enum class CopyResult {
    Copied,
    CreateFailed, // the destination (or its temporary file) could not be made; Error holds the code
    Failed,       // reading, writing or replacing failed; Error holds the code
    Broken,       // BreakFlag came up; nothing reported
};

struct CopyOutcome {
    CopyResult Result = CopyResult::Copied;
    DWORD Error = 0;
};

// Copies what can be read from source into destination; present says the
// destination exists (ProbeDestination). The new file gets the source's
// last-write time and the normal attribute. Each block is counted to the
// percent indicator and polls for a break.
CopyOutcome CopyInto(HANDLE source, const wchar_t* destination, bool present);
