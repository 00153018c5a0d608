#include "exec/system_call_server.h"

#include "app/errors.h"
#include "app/globals.h"
#include "app/host.h"
#include "app/toolkit/omdib.h"
#include "bars/status_bar.h"
#include "exec/call_payload.h"
#include "exec/process_wait.h"
#include "exec/program_keys.h"
#include "files/arg_paths.h"
#include "files/descriptions.h"
#include "files/file_walker.h"
#include "input/editor.h"
#include "lang/environment_index.h"
#include "lang/command_args.h"
#include "lang/shell_command.h"
#include "lang/text_stream.h"
#include "screen/colours.h"
#include "screen/screen_geometry.h"
#include "screen/screen_store.h"

#include <tlhelp32.h>

#include <cwchar>
#include <map>
#include <new>

SystemCallServer TheCallServer;

namespace {

// Classic console colours 0 to 15 as palette entries.
constexpr uint8_t kClassicPalette[16] = {0, 1, 15, 25, 13, 33, 21, 39, 38, 2, 16, 26, 11, 32, 24, 36};
constexpr int32_t kFirstVersion = 0x481;
constexpr int kAncestorSteps = 64;
constexpr UINT kReplyTimeout = 10000;
constexpr int kKeyPasses = 40;

std::wstring FromNarrow(const std::string& text)
{
    if (text.empty()) return {};
    UINT page = CodePageOf(ActiveCodePage);
    int n = MultiByteToWideChar(page, 0, text.data(), int(text.size()), nullptr, 0);
    std::wstring wide(size_t(n > 0 ? n : 0), L'\0');
    if (n > 0) MultiByteToWideChar(page, 0, text.data(), int(text.size()), wide.data(), n);
    return wide;
}

// A string argument in the request's form; false when it is not terminated.
bool TextArgument(CallPayload& in, bool wide, std::wstring& text)
{
    if (wide) return in.WideText(text);
    std::string narrow;
    if (!in.NarrowText(narrow)) return false;
    text = FromNarrow(narrow);
    return true;
}

// Written text: the rest of the payload, ending at its first 0.
std::wstring TextRest(CallPayload& in, bool wide) { return wide ? in.WideRest() : FromNarrow(in.NarrowRest()); }

void WriteText(const std::wstring& text, bool printableOnly)
{
    TheScreen.ConsoleWrite(text.c_str(), printableOnly ? 1 : 0, TheCallServer.ignoreBreak);
}

void SetColour(uint8_t value, bool background)
{
    int index;
    if (value < 16) index = kClassicPalette[value];
    else if (value <= 32) index = ItemColour[value - 16];
    else index = value - 33;
    if (index >= kPaletteSize) return;
    if (background) TheScreen.Attr = uint16_t((TheScreen.Attr & 0x00FF) | (index << 8));
    else TheScreen.Attr = uint16_t((TheScreen.Attr & 0xFF00) | index);
}

bool OnScreen(int32_t x, int32_t y) { return x >= 0 && y >= 0 && x < ScreenWidth && y < ScreenHeight; }

uint16_t DosTime(const FILETIME& written, bool date)
{
    FILETIME local;
    WORD dosDate = 0, dosTime = 0;
    if (FileTimeToLocalFileTime(&written, &local)) FileTimeToDosDateTime(&local, &dosDate, &dosTime);
    return date ? dosDate : dosTime;
}

// Whether pid is one of clients or descends from one, by the parents the
// system lists now.
bool DescendsFrom(DWORD pid, const std::vector<DWORD>& clients)
{
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) return false;
    std::map<DWORD, DWORD> parents;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry))
        parents[entry.th32ProcessID] = entry.th32ParentProcessID;
    CloseHandle(snapshot);
    for (int step = 0; step < kAncestorSteps; ++step) {
        auto found = parents.find(pid);
        if (found == parents.end() || found->second == 0 || found->second == pid) return false;
        pid = found->second;
        for (DWORD client : clients)
            if (client == pid) return true;
    }
    return false;
}

int32_t DescribeFile(const std::wstring& name, const std::wstring* text)
{
    if (name.empty()) return -1;
    DescriptionStore store;
    store.Load(name.c_str());
    int failed = text ? store.Add(name.c_str(), text->c_str()) : store.Remove(name.c_str());
    if (failed || store.Save()) return -1;
    return 0;
}

} // namespace

bool SystemCallServer::SenderAllowed(HWND sender) const
{
    if (clients_.empty() || !IsWindow(sender)) return false;
    DWORD pid = 0;
    GetWindowThreadProcessId(sender, &pid);
    for (DWORD client : clients_)
        if (client == pid) return true;
    return DescendsFrom(pid, clients_);
}

void SystemCallServer::PutInt(size_t offset, int32_t value)
{
    if (offset + 4 <= ByteCapacity()) std::memcpy(Bytes() + offset, &value, 4);
}

void SystemCallServer::PutText(const std::wstring& text, bool wide)
{
    if (wide) {
        size_t n = text.size() < reply_.size() ? text.size() : reply_.size() - 1;
        std::memcpy(reply_.data(), text.data(), n * sizeof(wchar_t));
        reply_[n] = 0;
        return;
    }
    char* out = reinterpret_cast<char*>(Bytes());
    int capacity = int(ByteCapacity() > 0x7FFFFFFF ? 0x7FFFFFFF : ByteCapacity());
    int n = text.empty() ? 0
                         : WideCharToMultiByte(CodePageOf(ActiveCodePage), 0, text.data(), int(text.size()), out,
                                               capacity - 1, nullptr, nullptr);
    out[n > 0 ? n : 0] = 0;
}

SystemCallServer::Answer SystemCallServer::TextOrFail(const wchar_t* text, bool wide)
{
    if (!text || !*text) Fail();
    else PutText(text, wide);
    return Answer::Data;
}

bool SystemCallServer::GrowReply(size_t characters)
{
    if (characters > kReplyLimit) return false;
    try {
        reply_.resize(characters);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

void SystemCallServer::Serve(HWND window, HWND sender, const COPYDATASTRUCT& request)
{
    if (!SenderAllowed(sender)) return;
    if (request.cbData > reply_.size() && !GrowReply(request.cbData)) {
        ReportId(13);
        return;
    }
    CallPayload in(request.lpData, request.cbData);
    Answer answer = Handle(DWORD(request.dwData), in, request.cbData);
    if (answer == Answer::None || !IsWindow(sender)) return;
    COPYDATASTRUCT back{};
    back.dwData = TheScreen.BreakFlag ? kBreakReplyCode : kReplyCode;
    if (answer == Answer::Data) {
        back.cbData = DWORD(ByteCapacity());
        back.lpData = reply_.data();
    }
    DWORD_PTR ignored = 0;
    SendMessageTimeoutW(sender, WM_COPYDATA, reinterpret_cast<WPARAM>(window), reinterpret_cast<LPARAM>(&back),
                        SMTO_ABORTIFHUNG, kReplyTimeout, &ignored);
}

SystemCallServer::Answer SystemCallServer::Handle(DWORD code, CallPayload& in, DWORD size)
{
    using Part = Answer (SystemCallServer::*)(DWORD, CallPayload&, DWORD, bool&);
    static constexpr Part kParts[] = {&SystemCallServer::HandleText,      &SystemCallServer::HandleScreen,
                                      &SystemCallServer::HandleInput,     &SystemCallServer::HandleArguments,
                                      &SystemCallServer::HandleFiles,     &SystemCallServer::HandleServices};
    for (Part part : kParts) {
        bool handled = true;
        Answer answer = (this->*part)(code, in, size, handled);
        if (handled) return answer;
    }
    // Codes not known are answered with the buffer as it was.
    return Answer::Data;
}

SystemCallServer::Answer SystemCallServer::HandleText(DWORD code, CallPayload& in, DWORD, bool& handled)
{
    bool wide = code >= 0x64;
    switch (code) {
    case 0x00:
    case 0x64: WriteText(TextRest(in, wide), true); break;
    case 0x08:
    case 0x65:
        WriteText(TextRest(in, wide), true);
        TheScreen.ConsoleWriteUnit(10);
        break;
    case 0x45:
    case 0x66: {
        // Counted: embedded zeros are part of the count and are skipped.
        size_t bytes = wide ? in.Left() & ~size_t(1) : in.Left();
        const uint8_t* data = bytes ? in.Bytes(bytes) : nullptr;
        std::wstring text;
        if (data && wide) {
            text.resize(bytes / 2);
            std::memcpy(text.data(), data, bytes);
        }
        else if (data) text = FromNarrow(std::string(reinterpret_cast<const char*>(data), bytes));
        TheScreen.ConsoleWriteCount(text.c_str(), int(text.size()), 0, ignoreBreak);
        break;
    }
    case 0x04:
    case 0x68:
    case 0x2E:
    case 0x67: {
        std::wstring text = TextRest(in, wide);
        if (text.empty()) break;
        bool acted = code == 0x2E || code == 0x67;
        if (acted) TheScreen.ConsoleWrite(text.substr(0, 1).c_str(), 0, ignoreBreak);
        else TheScreen.WriteCells(text.substr(0, 1).c_str());
        break;
    }
    case 0x0B:
    case 0x69: ReportText(TextRest(in, wide).c_str()); break;
    default: handled = false;
    }
    return Answer::Data;
}

SystemCallServer::Answer SystemCallServer::HandleScreen(DWORD code, CallPayload& in, DWORD, bool& handled)
{
    int32_t x = 0, y = 0, n = 0;
    uint8_t colour = 0;
    switch (code) {
    case 0x01: PutInt(0, TheScreen.CursorX); break;
    case 0x02: PutInt(0, TheScreen.CursorY); break;
    case 0x03:
        if (!in.Int(x) || !in.Int(y) || !OnScreen(x, y)) Fail();
        else TheScreen.Locate(x, y);
        break;
    case 0x05: TheScreen.ClearScreen(); return Answer::None;
    case 0x06: TheScreen.ClearToEnd(); return Answer::None;
    case 0x07:
    case 0x51:
        if (in.Byte(colour)) SetColour(colour, code == 0x51);
        else Fail();
        break;
    case 0x09: PutInt(0, ScreenWidth); break;
    case 0x0A: PutInt(0, ScreenHeight); break;
    case 0x3D: {
        if (!in.Int(x) || !in.Int(y) || !in.Int(n) || n < 0 || !OnScreen(x, y)) {
            Fail();
            break;
        }
        size_t room = ByteCapacity();
        std::vector<uint16_t> cells(size_t(n) < room ? size_t(n) : room);
        int got = TheScreen.ReadAttrs(x, y, int(cells.size()), cells.data());
        for (int i = 0; i < got; ++i) Bytes()[i] = uint8_t(cells[size_t(i)]);
        PutInt(0, got);
        break;
    }
    case 0x3E: {
        const uint8_t* colours = nullptr;
        if (!in.Int(x) || !in.Int(y) || !in.Int(n) || n < 0 || !OnScreen(x, y) || !(colours = in.Bytes(size_t(n)))) {
            Fail();
            break;
        }
        std::vector<uint16_t> cells(colours, colours + n);
        PutInt(0, TheScreen.WriteAttrs(x, y, n, cells.data()));
        break;
    }
    case 0x3F:
    case 0x8A: {
        std::wstring text;
        if (!in.Int(x) || !in.Int(y) || !in.Int(n) || n < 0 || !OnScreen(x, y) ||
            !TextArgument(in, code == 0x8A, text)) {
            Fail();
            break;
        }
        int count = n < int32_t(text.size()) ? n : int32_t(text.size());
        PutInt(0, TheScreen.WriteChars(x, y, count, text.c_str()));
        break;
    }
    case 0x8B:
    case 0x8C: {
        if (!in.Int(x) || !in.Int(y) || !in.Int(n) || n < 0 || !OnScreen(x, y)) {
            Fail();
            break;
        }
        size_t room = reply_.size() / 2 - 4;
        std::wstring text(size_t(n) < room ? size_t(n) : room, L'\0');
        int got = TheScreen.ReadChars(x, y, int(text.size()), text.data());
        text.resize(size_t(got > 0 ? got : 0));
        // The count comes first, the text behind it.
        std::wstring saved = text;
        PutText(saved, code == 0x8C);
        std::vector<uint8_t> body(Bytes(), Bytes() + ByteCapacity() - 4);
        std::memcpy(Bytes() + 4, body.data(), body.size());
        PutInt(0, got);
        break;
    }
    case 0x41: {
        int32_t first = 0, last = 0;
        if (!in.Int(first) || !in.Int(last) || !in.Int(n) || !OnScreen(0, first) || !OnScreen(0, last) ||
            first > last || n < -ScreenHeight || n > ScreenHeight) {
            Fail();
            break;
        }
        TheScreen.ScrollRegion(first, last, n);
        PutInt(0, 0);
        break;
    }
    case 0x42:
    case 0x43:
        if (!in.Int(y) || !OnScreen(0, y)) {
            Fail();
            break;
        }
        TheScreen.ScrollRegion(y, ScreenHeight - 1, code == 0x42 ? 1 : -1);
        PutInt(0, 0);
        break;
    case 0x44:
        TheScreen.RepaintScreen();
        Host->Refresh();
        return Answer::Empty;
    case 0x47: PutText(std::wstring(1, TheScreen.CharAtCursor()), false); break;
    case 0x75: reply_[0] = TheScreen.CharAtCursor(); break;
    case 0x4E: PutInt(0, TheScreen.SaveScreen()); break;
    case 0x4F: PutInt(0, TheScreen.RestoreScreen()); break;
    case 0x50: {
        int width = GetSystemMetrics(SM_CXMAXIMIZED) / (TheScreen.FontWidth > 0 ? TheScreen.FontWidth : 8);
        int height = GetSystemMetrics(SM_CYMAXIMIZED) / (TheScreen.FontHeight > 0 ? TheScreen.FontHeight : 12);
        PutInt(0, width);
        PutInt(4, height);
        break;
    }
    default: handled = false;
    }
    return Answer::Data;
}

SystemCallServer::Answer SystemCallServer::HandleInput(DWORD code, CallPayload&, DWORD, bool& handled)
{
    switch (code) {
    case 0x0C:
        TheScreen.Paging = TheScreen.PageEnabled;
        TheScreen.BreakFlag = 0;
        TheScreen.PageLines = 0;
        return Answer::None;
    case 0x0D:
        TheScreen.Paging = 0;
        Host->Refresh();
        return Answer::None;
    case 0x0E:
        Host->PollBreak();
        PutInt(0, TheScreen.BreakFlag);
        break;
    case 0x3A: Host->PollBreak(); return Answer::Empty;
    case 0x12:
    case 0x74:
    case 0x2F:
    case 0x73: {
        // A key typed while the program ran comes first.
        wchar_t key = TheProgramKeys.Take();
        if (!key) key = Host->ReadKey();
        if (key == 3 && (code == 0x12 || code == 0x74)) TheScreen.ShowBreak();
        if (code == 0x12 || code == 0x2F) {
            char narrow[8] = {};
            wchar_t unit[2] = {key, 0};
            ToNarrowInto(unit, narrow, int(sizeof(narrow)));
            PutInt(0, uint8_t(narrow[0]));
        } else {
            PutInt(0, key);
        }
        break;
    }
    case 0x13:
    case 0x79: {
        // A look leaves the key for the read that follows it.
        wchar_t key = TheProgramKeys.Peek();
        for (int pass = 0; pass < kKeyPasses && !key && !TheScreen.BreakFlag; ++pass) {
            PumpWaitMessages(false);
            key = TheProgramKeys.Peek();
        }
        if (!key) key = Host->PeekKey();
        PutInt(0, key);
        break;
    }
    case 0x19:
    case 0x72: {
        std::vector<wchar_t> line(kLineMax);
        if (Host->ReadLine(line.data(), kLineMax)) PutText(line.data(), code == 0x72);
        else Fail();
        break;
    }
    case 0x8D:
    case 0x8E:
    case 0x8F:
    case 0x90:
        // No key event is kept for other programs: the slot reads as empty.
        std::memset(Bytes(), 0, 20);
        break;
    case 0x48: PutInt(0, readFlag); break;
    case 0x49: readFlag = 0; return Answer::Empty;
    case 0x88: return Answer::None;
    default: handled = false;
    }
    return Answer::Data;
}

SystemCallServer::Answer SystemCallServer::HandleArguments(DWORD code, CallPayload& in, DWORD, bool& handled)
{
    int32_t i = 0;
    bool wide = code >= 0x64;
    switch (code) {
    case 0x14: PutInt(0, CommandArgs.ArgCount); break;
    case 0x15:
    case 0x2B:
    case 0x6C:
    case 0x6D:
        if (!in.Int(i) || i < 0 || i > CommandArgs.ArgCount) Fail();
        else PutText(i == 0 ? CommandArgs.Command : CommandArgs.Args[i - 1], wide);
        break;
    case 0x16:
    case 0x6E: PutText(CommandArgs.Tail, wide); break;
    case 0x17: PutInt(0, lstrlenW(CommandArgs.Switches)); break;
    case 0x18:
    case 0x6F: PutText(CommandArgs.Switches, wide); break;
    case 0x1D:
    case 0x6A:
    case 0x1E:
    case 0x6B: {
        if (!in.Int(i) || i < 0 || i > CommandArgs.ArgCount) {
            Fail();
            break;
        }
        bool full = code == 0x1D || code == 0x6A;
        return TextOrFail(full ? ArgFullPath(i) : ArgRawPath(i), wide);
    }
    default: handled = false;
    }
    return Answer::Data;
}

SystemCallServer::Answer SystemCallServer::EntryRecord(int32_t index, bool wide)
{
    size_t size = wide ? 528 : 272;
    std::memset(Bytes(), 0, size);
    if (index < 0 || index >= TheWalker.count) {
        if (wide) PutInt(16, 0xFFFF);
        else Bytes()[16] = 0xFF;
        return Answer::Data;
    }
    const FileEntry& entry = *TheWalker.entries[index];
    PutInt(4, int32_t(entry.nFileSizeLow));
    PutInt(8, int32_t(entry.dwFileAttributes));
    uint16_t time = DosTime(entry.ftLastWriteTime, false), date = DosTime(entry.ftLastWriteTime, true);
    std::memcpy(Bytes() + 12, &time, 2);
    std::memcpy(Bytes() + 14, &date, 2);
    if (wide) {
        size_t n = wcsnlen(entry.cFileName, 255);
        std::memcpy(Bytes() + 16, entry.cFileName, n * sizeof(wchar_t));
    } else {
        ToNarrowInto(entry.cFileName, reinterpret_cast<char*>(Bytes() + 16), 256);
    }
    return Answer::Data;
}

SystemCallServer::Answer SystemCallServer::HandleFiles(DWORD code, CallPayload& in, DWORD, bool& handled)
{
    int32_t value = 0;
    std::wstring text;
    bool wide = code >= 0x64;
    switch (code) {
    case 0x1A:
    case 0x76:
        if (!in.Int(value) || !TextArgument(in, wide, text) || text.empty()) {
            Fail();
            break;
        }
        TheWalker.WalkFiles(text.c_str(), DWORD(value) & kWalkAttributes);
        TheWalker.SortByName();
        PutInt(0, TheWalker.count);
        break;
    case 0x1B:
    case 0x77:
        if (!in.Int(value)) value = -1;
        return EntryRecord(value, wide);
    case 0x1C:
    case 0x78:
        if (!in.Int(value) || value < 0 || value >= TheWalker.count) Fail();
        else PutText(TheWalker.EntryPath(value), wide);
        break;
    case 0x1F:
    case 0x7A:
    case 0x26:
    case 0x7C: {
        if (!TextArgument(in, wide, text)) {
            Fail();
            break;
        }
        treeList = std::make_unique<DirTreeList>();
        if (code == 0x1F || code == 0x7A) BuildDirTree(*treeList, text.c_str());
        else BuildDriveTrees(*treeList, text.c_str());
        SortDirTree(*treeList);
        PutInt(0, treeList->count);
        break;
    }
    case 0x20:
    case 0x7B:
        if (!in.Int(value) || !treeList || value < 0 || value >= treeList->count) Fail();
        else PutText(treeList->Item(value), wide);
        break;
    case 0x23: treeList.reset(); return Answer::Empty;
    case 0x29:
    case 0x83: {
        std::wstring description;
        if (!TextArgument(in, wide, text) || !TextArgument(in, wide, description)) Fail();
        else PutInt(0, DescribeFile(text, &description));
        break;
    }
    case 0x33:
    case 0x85:
        if (!TextArgument(in, wide, text)) Fail();
        else PutInt(0, DescribeFile(text, nullptr));
        break;
    case 0x2A:
    case 0x84: {
        if (!TextArgument(in, wide, text) || text.empty()) {
            Fail();
            break;
        }
        DescriptionStore store;
        store.Load(text.c_str());
        PutText(store.Lookup(text.c_str()).description, wide);
        break;
    }
    case 0x40:
    case 0x89: {
        PutInt(0, -1);
        if (!TextArgument(in, wide, text)) break;
        TextStream file;
        // A file that cannot be opened detects as code page text all the same.
        if (file.Open(text.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING))
            PutInt(0, file.SniffEncoding());
        else PutInt(0, 1);
        break;
    }
    default: handled = false;
    }
    return Answer::Data;
}

SystemCallServer::Answer SystemCallServer::HandleServices(DWORD code, CallPayload& in, DWORD size, bool& handled)
{
    int32_t value = 0, high = 0;
    std::wstring text;
    bool wide = code >= 0x64;
    switch (code) {
    case 0x0F:
    case 0x10:
        if (!in.Int(value)) Fail();
        else if (code == 0x0F) ProgressStart(uint64_t(uint32_t(value)));
        else ProgressAdd(uint64_t(uint32_t(value)));
        break;
    case 0x4A:
    case 0x4B: {
        if (!in.Int(value) || !in.Int(high)) {
            Fail();
            break;
        }
        uint64_t amount = (uint64_t(uint32_t(high)) << 32) | uint32_t(value);
        if (code == 0x4A) ProgressStart(amount);
        else ProgressAdd(amount);
        break;
    }
    case 0x11: ProgressEnd(); return Answer::Empty;
    case 0x21:
        treeList.reset();
        ignoreBreak = 0;
        TheScreen.BreakFlag = 0;
        if (!in.Int(value) || !in.Int(clientVersion)) Fail();
        else if (clientVersion < kFirstVersion) PutInt(0, 0);
        break;
    case 0x27: ignoreBreak = 1; return Answer::None;
    case 0x28: ignoreBreak = 0; return Answer::None;
    case 0x2C: PutInt(0, 0); break;
    case 0x2D: PutInt(0, 1); break;
    case 0x36: PutInt(0, 0); break;
    case 0x30:
    case 0x7D: {
        if (!TextArgument(in, wide, text) || text.empty()) {
            Fail();
            break;
        }
        const std::wstring* found = FindEnvironment(text.c_str());
        PutText(found ? *found : std::wstring(), wide);
        break;
    }
    case 0x31:
    case 0x7E: {
        uint16_t result = wide ? 0xFFFF : 0xFF;
        size_t equals = std::wstring::npos;
        if (TextArgument(in, wide, text)) equals = text.find(L'=', 1);
        if (equals != std::wstring::npos) {
            std::wstring name = text.substr(0, equals), setting = text.substr(equals + 1);
            if (WriteEnvironment(name.c_str(), setting.empty() ? nullptr : setting.c_str())) result = 0;
        }
        std::memcpy(Bytes(), &result, 2);
        break;
    }
    case 0x34:
    case 0x35:
    case 0x7F:
    case 0x80:
    case 0x37:
    case 0x38:
    case 0x81:
    case 0x82:
        // Paths are shown as the system writes them: both forms are the same.
        if (!TextArgument(in, wide, text)) Fail();
        else PutText(text, wide);
        break;
    case 0x3C:
        if (!in.Int(value)) value = -1;
        if (value == 0) PutInt(0, TheEditor.Input.IsOpen() ? 1 : 0);
        else if (value == 1) PutInt(0, TheScreen.Redirected ? 1 : 0);
        else PutInt(0, value == 2 ? 0 : -1);
        break;
    case 0x4C:
    case 0x4D:
    case 0x70:
    case 0x71: {
        if (!TextArgument(in, wide, text)) {
            Fail();
            break;
        }
        bool isSigned = code == 0x4C || code == 0x70;
        uint64_t number = isSigned ? uint64_t(std::wcstoll(text.c_str(), nullptr, 10))
                                   : uint64_t(std::wcstoull(text.c_str(), nullptr, 10));
        std::memcpy(Bytes(), &number, 8);
        break;
    }
    case 0x3B:
    case 0x86:
    case 0x46:
    case 0x87: return RunLine(code, in, size);
    default: handled = false;
    }
    return Answer::Data;
}

namespace {

// The diagnostic forms show the payload as wide text whatever its form, so
// an 8-bit line shows as pairs of bytes.
void ShowPayload(const wchar_t* label, const wchar_t* sizeLabel, const wchar_t* textLabel, DWORD size,
                 const std::wstring& raw)
{
    TheScreen.Write(label);
    TheScreen.NewLine();
    TheScreen.Write(sizeLabel);
    TheScreen.WriteULong(size);
    TheScreen.NewLine();
    TheScreen.Write(textLabel);
    TheScreen.Write(raw.c_str());
    TheScreen.Write(L"|");
    TheScreen.NewLine();
}

} // namespace

SystemCallServer::Answer SystemCallServer::RunLine(DWORD code, CallPayload& in, DWORD size)
{
    bool wide = code == 0x86 || code == 0x87;
    bool diagnostic = code == 0x46 || code == 0x87;
    std::wstring raw;
    if (diagnostic) {
        CallPayload copy = in;
        size_t units = copy.Left() / 2;
        raw.resize(units);
        if (units) std::memcpy(raw.data(), copy.Bytes(units * 2), units * 2);
        raw = raw.c_str();
    }
    std::wstring line;
    if (!TextArgument(in, wide, line)) {
        Fail();
        return Answer::Data;
    }
    const wchar_t* name = code == 0x87 ? L"W_WSYSTEMCALL2" : L"W_SYSTEMCALL2";
    if (diagnostic) {
        TheScreen.NewLine();
        ShowPayload((std::wstring(name) + L" received").c_str(), L"byte size: ", L"data string: |", size, raw);
    }
    {
        ShellCommand nested;
        nested.RunCommandLine(line.c_str());
    }
    if (diagnostic) {
        ShowPayload((std::wstring(name) + L" leaving").c_str(), L"org byte size: ", L"org data string: |", size, raw);
        TheScreen.Write(L"errorlevel: ");
        TheScreen.WriteInt(ErrorLevel);
        TheScreen.NewLine();
    }
    PutInt(0, ErrorLevel);
    return Answer::Data;
}

namespace {

LRESULT CALLBACK CallWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_COPYDATA) return DefWindowProcW(window, message, wParam, lParam);
    ServeCopyData(window, wParam, lParam);
    return 1;
}

} // namespace

void ServeCopyData(HWND window, WPARAM wParam, LPARAM lParam)
{
    auto* request = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    if (request) TheCallServer.Serve(window, reinterpret_cast<HWND>(wParam), *request);
}

std::wstring CallWindowNumber()
{
    wchar_t digits[24];
    ui64tow_ex(uint64_t(reinterpret_cast<uintptr_t>(CallWindow())), digits, 10);
    return digits;
}

HWND CallWindow()
{
    if (MainWindow) return MainWindow;
    static HWND window = nullptr;
    if (window) return window;
    WNDCLASSW type{};
    type.lpfnWndProc = CallWindowProc;
    type.hInstance = GetModuleHandleW(nullptr);
    type.lpszClassName = L"OmbrelCalls";
    RegisterClassW(&type);
    window = CreateWindowExW(0, type.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, type.hInstance, nullptr);
    return window;
}
