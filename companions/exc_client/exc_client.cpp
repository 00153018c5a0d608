#include "exc_client.h"

#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

namespace {

constexpr unsigned kHandshake = 0x21;
constexpr unsigned kWriteW = 0x64;
constexpr unsigned kWriteLineW = 0x65;
constexpr unsigned kWriteCountedW = 0x66;
constexpr unsigned kArgCount = 0x14;
constexpr unsigned kArgW = 0x6C;
constexpr unsigned kWalkW = 0x76;
constexpr unsigned kEntryPathW = 0x78;
constexpr unsigned kGetVariableW = 0x7D;
constexpr unsigned kSetVariableW = 0x7E;
constexpr unsigned kRunW = 0x86;
constexpr ULONG_PTR kBreakReply = 0x39;

struct Session {
    HWND shell = nullptr;
    HWND own = nullptr;
    bool answered = false;
    bool breakSeen = false;
    std::vector<unsigned char> answer;
};

Session session;

LRESULT CALLBACK ReplyProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_COPYDATA) return DefWindowProcW(window, message, wParam, lParam);
    if (reinterpret_cast<HWND>(wParam) != session.shell) return 0;
    const auto* reply = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    const auto* bytes = static_cast<const unsigned char*>(reply->lpData);
    session.answer.assign(bytes, bytes ? bytes + reply->cbData : bytes);
    session.breakSeen = reply->dwData == kBreakReply;
    session.answered = true;
    return 1;
}

// The last word of the command line, else "=hwnd".
HWND ShellWindow()
{
    const wchar_t* line = GetCommandLineW();
    const wchar_t* last = std::wcsrchr(line, L' ');
    wchar_t* end = nullptr;
    unsigned long long value = last ? std::wcstoull(last + 1, &end, 10) : 0;
    if (value == 0 || (end && *end)) {
        wchar_t text[32] = {};
        if (GetEnvironmentVariableW(L"=hwnd", text, 32) - 1 < 31) value = std::wcstoull(text, nullptr, 10);
    }
    HWND window = reinterpret_cast<HWND>(static_cast<ULONG_PTR>(value));
    return value != 0 && IsWindow(window) ? window : nullptr;
}

std::vector<unsigned char> WidePayload(const wchar_t* text, const int32_t* leading = nullptr)
{
    std::vector<unsigned char> payload;
    if (leading) payload.insert(payload.end(), reinterpret_cast<const unsigned char*>(leading),
                                reinterpret_cast<const unsigned char*>(leading) + 4);
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    payload.insert(payload.end(), bytes, bytes + (std::wcslen(text) + 1) * sizeof(wchar_t));
    return payload;
}

long CallWithInt(unsigned code, int32_t value, void* reply, size_t size)
{
    return ExcCall(code, &value, sizeof(value), reply, size);
}

int32_t AnswerInt()
{
    int32_t value = -1;
    if (session.answer.size() >= 4) std::memcpy(&value, session.answer.data(), 4);
    return value;
}

// The answer as text into buffer; -1 when it carries the failure mark.
int AnswerText(long got, wchar_t* buffer, size_t size)
{
    if (size == 0) return -1;
    buffer[0] = 0;
    if (got < 2) return -1;
    size_t units = session.answer.size() / 2;
    std::vector<wchar_t> text(units + 1, 0);
    std::memcpy(text.data(), session.answer.data(), units * 2);
    if (text[0] == EXC_FAILED_MARK) return -1;
    size_t n = wcsnlen(text.data(), units);
    if (n >= size) n = size - 1;
    std::memcpy(buffer, text.data(), n * sizeof(wchar_t));
    buffer[n] = 0;
    return 0;
}

} // namespace

extern "C" int ExcOpen(void)
{
    session.shell = ShellWindow();
    if (!session.shell) return -1;
    WNDCLASSW type{};
    type.lpfnWndProc = ReplyProc;
    type.hInstance = GetModuleHandleW(nullptr);
    type.lpszClassName = L"ExcClientReply";
    RegisterClassW(&type);
    session.own = CreateWindowExW(0, type.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, type.hInstance,
                                  nullptr);
    if (!session.own) return -1;
    int32_t greeting[2] = {0, EXC_CLIENT_VERSION};
    return ExcCall(kHandshake, greeting, sizeof(greeting), nullptr, 0) < 0 ? -1 : 0;
}

extern "C" void ExcClose(void)
{
    if (session.own) DestroyWindow(session.own);
    session = Session{};
}

extern "C" long ExcCall(unsigned code, const void* payload, size_t size, void* reply, size_t replySize)
{
    if (!session.own || size > 0x7FFFFFFF) return -1;
    session.answered = false;
    session.answer.clear();
    COPYDATASTRUCT request{code, DWORD(size), const_cast<void*>(payload)};
    SendMessageW(session.shell, WM_COPYDATA, reinterpret_cast<WPARAM>(session.own), reinterpret_cast<LPARAM>(&request));
    if (!session.answered) return -1;
    if (reply && replySize) {
        size_t n = session.answer.size() < replySize ? session.answer.size() : replySize;
        std::memcpy(reply, session.answer.data(), n);
    }
    return long(session.answer.size());
}

extern "C" int ExcBreakSeen(void) { return session.breakSeen ? 1 : 0; }

extern "C" int ExcWrite(const wchar_t* text)
{
    return ExcCall(kWriteW, text, std::wcslen(text) * sizeof(wchar_t), nullptr, 0) < 0 ? -1 : 0;
}

extern "C" int ExcWriteCounted(const wchar_t* text, size_t units)
{
    return ExcCall(kWriteCountedW, text, units * sizeof(wchar_t), nullptr, 0) < 0 ? -1 : 0;
}

extern "C" int ExcWriteLine(const wchar_t* text)
{
    std::vector<unsigned char> payload = WidePayload(text);
    return ExcCall(kWriteLineW, payload.data(), payload.size(), nullptr, 0) < 0 ? -1 : 0;
}

extern "C" int ExcArgCount(void) { return ExcCall(kArgCount, nullptr, 0, nullptr, 0) < 4 ? -1 : AnswerInt(); }

extern "C" int ExcArg(int i, wchar_t* buffer, size_t size)
{
    return AnswerText(CallWithInt(kArgW, i, nullptr, 0), buffer, size);
}

extern "C" int ExcWalk(const wchar_t* pattern, unsigned attributes)
{
    int32_t mask = int32_t(attributes);
    std::vector<unsigned char> payload = WidePayload(pattern, &mask);
    return ExcCall(kWalkW, payload.data(), payload.size(), nullptr, 0) < 4 ? -1 : AnswerInt();
}

extern "C" int ExcEntryPath(int i, wchar_t* buffer, size_t size)
{
    return AnswerText(CallWithInt(kEntryPathW, i, nullptr, 0), buffer, size);
}

extern "C" int ExcGetVariable(const wchar_t* name, wchar_t* buffer, size_t size)
{
    std::vector<unsigned char> payload = WidePayload(name);
    return AnswerText(ExcCall(kGetVariableW, payload.data(), payload.size(), nullptr, 0), buffer, size);
}

extern "C" int ExcSetVariable(const wchar_t* name, const wchar_t* value)
{
    std::wstring setting = std::wstring(name) + L"=" + value;
    std::vector<unsigned char> payload = WidePayload(setting.c_str());
    unsigned short result = 0xFFFF;
    if (ExcCall(kSetVariableW, payload.data(), payload.size(), &result, sizeof(result)) < 2) return -1;
    return result == 0 ? 0 : -1;
}

extern "C" int ExcRun(const wchar_t* line)
{
    std::vector<unsigned char> payload = WidePayload(line);
    return ExcCall(kRunW, payload.data(), payload.size(), nullptr, 0) < 4 ? -1 : AnswerInt();
}
