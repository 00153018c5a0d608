#include "relay.h"

#include "exc_client.h"

#include <vector>

namespace {

constexpr unsigned kLookForKeyW = 0x79;
constexpr unsigned kWaitForKeyW = 0x73;
// Keys are looked for this often right after one came, and less often the
// longer none comes (each look costs a round trip with the shell).
constexpr DWORD kKeyPollMilliseconds = 25;
constexpr DWORD kIdlePollMilliseconds = 100;
// Text goes to the shell in large pieces: each request costs a round trip
// and a reply as large as the shell's reply buffer, whatever it says.
constexpr size_t kWritePiece = 30000;
constexpr wchar_t kCtrlC = 3;
constexpr wchar_t kCtrlZ = 0x1A;
constexpr wchar_t kBackspace = 8;
constexpr wchar_t kEscape = 27;
// A program that has not ended this long after Ctrl-C is stopped.
constexpr ULONGLONG kBreakGrace = 2000;

std::string Encoded(const std::wstring& text, UINT codePage)
{
    int n = WideCharToMultiByte(codePage, 0, text.data(), int(text.size()), nullptr, 0, nullptr, nullptr);
    std::string bytes(size_t(n > 0 ? n : 0), '\0');
    if (n > 0) WideCharToMultiByte(codePage, 0, text.data(), int(text.size()), bytes.data(), n, nullptr, nullptr);
    return bytes;
}

// A key as request 0x79 or 0x73 answers it: the character in the first bytes.
wchar_t KeyAnswer(unsigned code)
{
    int32_t key = 0;
    if (ExcCall(code, nullptr, 0, &key, sizeof(key)) < 4) return 0;
    return wchar_t(key);
}

} // namespace

void Relay::Run()
{
    HANDLE waits[2] = {child_.Process(), child_.OutputEvent()};
    ULONGLONG lastLook = 0;
    for (;;) {
        DWORD woke = WaitForMultipleObjects(2, waits, FALSE, pollInterval_);
        ShowOutput();
        if (woke == WAIT_OBJECT_0) break;
        // While output streams, keys are looked for as often as when it is quiet.
        ULONGLONG now = GetTickCount64();
        if (now - lastLook < pollInterval_) continue;
        lastLook = now;
        PassKeys();
        WatchBreak();
    }
    // Everything the program showed reaches the screen before the loader ends.
    child_.Finish();
    ShowOutput();
}

void Relay::ShowOutput()
{
    std::string bytes = child_.TakeOutput();
    if (bytes.empty()) return;
    std::wstring text = translator_.Translate(bytes.data(), bytes.size());
    for (size_t done = 0; done < text.size(); done += kWritePiece) Show(text.substr(done, kWritePiece));
}

void Relay::Show(const std::wstring& text)
{
    if (detached_ || text.empty()) return;
    // Counted and unfiltered: the program's every character reaches the
    // screen, whatever the runtime's print test thinks of it.
    if (ExcWriteCounted(text.data(), text.size()) == 0) return;
    detached_ = true;
    if (!inputEnded_) child_.EndInput();
    inputEnded_ = true;
}

void Relay::PassKeys()
{
    if (detached_ || inputEnded_) return;
    for (;;) {
        wchar_t key = KeyAnswer(kLookForKeyW);
        if (key == 0) {
            if (pollInterval_ < kIdlePollMilliseconds) pollInterval_ += kKeyPollMilliseconds;
            FeedTyped();
            return;
        }
        pollInterval_ = kKeyPollMilliseconds;
        if (key == kCtrlZ) {
            // The shell's input has ended, or Ctrl-Z was typed: so does the program's.
            FeedTyped();
            child_.EndInput();
            inputEnded_ = true;
            return;
        }
        PassKey(KeyAnswer(kWaitForKeyW));
    }
}

// The keys of one look go to the console in one write, so that the escape
// sequence of an arrow key arrives whole and is never read as a lone Escape.
void Relay::FeedTyped()
{
    if (typed_.empty()) return;
    child_.Feed(Encoded(typed_, CP_UTF8));
    typed_.clear();
}

void Relay::PassKey(wchar_t key)
{
    if (key == 0) return;
    if (key == kCtrlC) {
        FeedTyped();
        SendBreak();
        return;
    }
    if (!child_.PseudoConsole()) {
        EditLine(key);
        return;
    }
    // A terminal's keys: Backspace is DEL there.
    typed_ += key == kBackspace ? wchar_t(0x7F) : key;
}

// On pipes nobody echoes or edits the line: the loader does, as a console
// would, and hands the program the whole line at Enter.
void Relay::EditLine(wchar_t key)
{
    // The sequences of arrows and other keys without a character have no
    // use in a line read from a pipe: they are skipped.
    if (key == kEscape || inSequence_) {
        inSequence_ = key == kEscape || key == L'[' || key == L'O' || (key >= L'0' && key <= L'9') || key == L';';
        return;
    }
    if (key == L'\r') {
        Show(L"\r\n");
        child_.Feed(Encoded(line_ + L"\r\n", CP_ACP));
        line_.clear();
        return;
    }
    if (key == kBackspace) {
        if (line_.empty()) return;
        line_.pop_back();
        Show(L"\b \b");
        return;
    }
    if (key < 32 && key != L'\t') return;
    line_ += key;
    Show(std::wstring(1, key));
}

void Relay::WatchBreak()
{
    if (breakAt_ && GetTickCount64() - breakAt_ > kBreakGrace) {
        child_.Stop();
        breakAt_ = 0;
    }
    if (detached_) return;
    bool broken = ExcBreakSeen() != 0;
    if (broken && !breakSent_) SendBreak();
    breakSent_ = broken;
}

void Relay::SendBreak()
{
    child_.Break();
    if (!breakAt_) breakAt_ = GetTickCount64();
}
