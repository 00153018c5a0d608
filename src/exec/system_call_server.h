// SystemCallServer: the shell's side of the requests other programs send to
// its window by WM_COPYDATA. An external command (.EXC) uses the shell as its
// terminal and service layer: it prints, reads keys and lines, reads its
// arguments, walks files, reads and writes descriptions and variables, draws
// on the text screen and runs command lines. Each request is answered at once
// by a WM_COPYDATA sent back to the sender's window.
//
// Requests are served only while the shell waits for a program it started,
// and only from windows of that program's process or of its descendants.
// Every payload is read within the bytes the message carried; a request whose
// payload does not fit gets the failure mark (0xFFFF in the first character).
#pragma once

#include "files/dir_tree.h"

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class CallPayload;

class SystemCallServer {
public:
    static constexpr int kScratchSize = 4096;
    static constexpr size_t kReplyStart = 4096;
    // The reply never grows past this many characters: a bigger request is
    // answered as out of memory.
    static constexpr size_t kReplyLimit = size_t(1) << 24;
    static constexpr ULONG_PTR kReplyCode = 0x22;
    static constexpr ULONG_PTR kBreakReplyCode = 0x39;

    int32_t ignoreBreak = 0;
    int32_t clientVersion = 0;
    int32_t readFlag = 0;
    std::unique_ptr<DirTreeList> treeList;

    // Handles one WM_COPYDATA that reached window; the sender is the
    // message's wParam.
    void Serve(HWND window, HWND sender, const COPYDATASTRUCT& request);

    // The process the shell now waits for; waits nest.
    void BeginClient(DWORD processId) { clients_.push_back(processId); }
    // A reply buffer grown for one program goes back to its first size when
    // no program is served, so later replies do not carry its size along.
    void EndClient()
    {
        clients_.pop_back();
        if (clients_.empty() && reply_.size() > kReplyStart) reply_ = std::vector<wchar_t>(kReplyStart);
    }
    bool Serving() const { return !clients_.empty(); }

private:
    enum class Answer { Data, Empty, None };

    std::vector<wchar_t> reply_ = std::vector<wchar_t>(kReplyStart);
    std::vector<DWORD> clients_;

    bool SenderAllowed(HWND sender) const;
    // false when the reply cannot have that many characters.
    bool GrowReply(size_t characters);
    Answer Handle(DWORD code, CallPayload& in, DWORD size);
    Answer HandleText(DWORD code, CallPayload& in, DWORD size, bool& handled);
    Answer HandleScreen(DWORD code, CallPayload& in, DWORD size, bool& handled);
    Answer HandleInput(DWORD code, CallPayload& in, DWORD size, bool& handled);
    Answer HandleArguments(DWORD code, CallPayload& in, DWORD size, bool& handled);
    Answer HandleFiles(DWORD code, CallPayload& in, DWORD size, bool& handled);
    Answer HandleServices(DWORD code, CallPayload& in, DWORD size, bool& handled);
    Answer RunLine(DWORD code, CallPayload& in, DWORD size);
    Answer EntryRecord(int32_t index, bool wide);

    // Reply writers; each stays within the buffer.
    uint8_t* Bytes() { return reinterpret_cast<uint8_t*>(reply_.data()); }
    size_t ByteCapacity() const { return reply_.size() * sizeof(wchar_t); }
    void PutInt(size_t offset, int32_t value);
    void PutText(const std::wstring& text, bool wide);
    void Fail() { reply_[0] = 0xFFFF; }
    Answer TextOrFail(const wchar_t* text, bool wide);
};

extern SystemCallServer TheCallServer;

// The window other programs send their requests to: the main window, or in
// the console host a message-only window made on first use.
HWND CallWindow();
// CallWindow's handle in decimal, as programs are told it.
std::wstring CallWindowNumber();
// The handler of WM_COPYDATA for either window; the message's result is 1.
void ServeCopyData(HWND window, WPARAM wParam, LPARAM lParam);

// Marks the wait for one started program: requests from it are served for
// the life of this object.
class ServedProgram {
public:
    explicit ServedProgram(DWORD processId) { TheCallServer.BeginClient(processId); }
    ~ServedProgram() { TheCallServer.EndClient(); }
    ServedProgram(const ServedProgram&) = delete;
    ServedProgram& operator=(const ServedProgram&) = delete;
};
