// The shell's side of the request protocol, driven in this process: a window
// of the test sends WM_COPYDATA requests to the shell's call window and takes
// the answers. The edge cases of the table, the refusal of requests while no
// program is waited for, and a bounded fuzz run of random and mutated
// requests that must neither crash nor hang.
#include "exec/system_call_server.h"
#include "lang/command_args.h"
#include "lang/environment_index.h"
#include "screen/screen_store.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <climits>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

struct Answer {
    bool came = false;
    ULONG_PTR code = 0;
    std::vector<uint8_t> bytes;
};

Answer lastAnswer;

LRESULT CALLBACK ClientProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_COPYDATA) return DefWindowProcW(window, message, wParam, lParam);
    const auto* reply = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    const auto* data = static_cast<const uint8_t*>(reply->lpData);
    lastAnswer.came = true;
    lastAnswer.code = reply->dwData;
    lastAnswer.bytes.assign(data, data ? data + reply->cbData : data);
    return 1;
}

HWND ClientWindow()
{
    static HWND window = nullptr;
    if (window) return window;
    WNDCLASSW type{};
    type.lpfnWndProc = ClientProc;
    type.hInstance = GetModuleHandleW(nullptr);
    type.lpszClassName = L"CallTestClient";
    RegisterClassW(&type);
    window = CreateWindowExW(0, type.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, type.hInstance, nullptr);
    return window;
}

// Sends one request; the payload lives in a buffer of exactly its size.
Answer Send(DWORD code, const std::vector<uint8_t>& payload)
{
    lastAnswer = Answer{};
    std::vector<uint8_t> exact(payload);
    COPYDATASTRUCT request{code, DWORD(exact.size()), exact.empty() ? nullptr : exact.data()};
    SendMessageW(CallWindow(), WM_COPYDATA, reinterpret_cast<WPARAM>(ClientWindow()),
                 reinterpret_cast<LPARAM>(&request));
    return lastAnswer;
}

std::vector<uint8_t> Ints(std::initializer_list<int32_t> values)
{
    std::vector<uint8_t> bytes(values.size() * 4);
    std::memcpy(bytes.data(), values.begin(), bytes.size());
    return bytes;
}

std::vector<uint8_t> Narrow(const char* text) { return std::vector<uint8_t>(text, text + std::strlen(text) + 1); }

int32_t FirstInt(const Answer& a)
{
    int32_t value = 0;
    if (a.bytes.size() >= 4) std::memcpy(&value, a.bytes.data(), 4);
    return value;
}

uint16_t FirstUnit(const Answer& a) { return a.bytes.size() >= 2 ? uint16_t(a.bytes[0] | (a.bytes[1] << 8)) : 0; }

std::string NarrowAnswer(const Answer& a)
{
    return std::string(reinterpret_cast<const char*>(a.bytes.data()), strnlen(reinterpret_cast<const char*>(a.bytes.data()), a.bytes.size()));
}

struct ArgumentsParsed {
    std::wstring line;
    explicit ArgumentsParsed(const wchar_t* text) : line(text) { CommandArgs.Parse(line.data()); }
};

TEST(SystemCall, RefusedWhileNoProgramIsWaitedFor)
{
    EXPECT_FALSE(Send(0x2D, {}).came);
    ServedProgram served(GetCurrentProcessId());
    Answer a = Send(0x2D, {});
    ASSERT_TRUE(a.came);
    EXPECT_EQ(FirstInt(a), 1);
    // Another process's id is not this one, nor an ancestor of it.
    TheCallServer.EndClient();
    TheCallServer.BeginClient(GetCurrentProcessId() + 4);
    EXPECT_FALSE(Send(0x2D, {}).came);
}

TEST(SystemCall, EdgesOfTheTable)
{
    TempFolder f;
    f.WriteBytes(L"one.txt", "1");
    ArgumentsParsed parsed(L"tool first second");
    ServedProgram served(GetCurrentProcessId());
    std::wstring pattern = f.Path() + L"\\*.txt";
    std::string narrowPattern(pattern.begin(), pattern.end());

    // The handshake: 0x480 is answered with 0, 0x481 leaves the buffer.
    Send(0x2C, {});
    EXPECT_EQ(FirstInt(Send(0x21, Ints({0, 0x480}))), 0);
    Send(0x2D, {});
    EXPECT_EQ(FirstInt(Send(0x21, Ints({0, 0x481}))), 1);

    // Arguments: the count is in range, one more is not.
    EXPECT_EQ(FirstInt(Send(0x14, {})), 2);
    EXPECT_EQ(NarrowAnswer(Send(0x15, Ints({2}))), "second");
    EXPECT_EQ(NarrowAnswer(Send(0x15, Ints({0}))), "tool");
    EXPECT_EQ(FirstUnit(Send(0x15, Ints({3}))), 0xFFFF);
    EXPECT_EQ(FirstUnit(Send(0x6C, Ints({-1}))), 0xFFFF);

    // A walk, then its entries; past the end the name's first byte is 0xFF.
    std::vector<uint8_t> walk = Ints({0});
    walk.insert(walk.end(), narrowPattern.begin(), narrowPattern.end());
    walk.push_back(0);
    EXPECT_EQ(FirstInt(Send(0x1A, walk)), 1);
    Answer entry = Send(0x1B, Ints({0}));
    ASSERT_GE(entry.bytes.size(), 272u);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&entry.bytes[16])), "one.txt");
    EXPECT_EQ(FirstInt(entry) == 0 && entry.bytes[4] == 1, true);
    Answer past = Send(0x1B, Ints({1}));
    EXPECT_EQ(past.bytes[16], 0xFF);
    EXPECT_EQ(past.bytes[4], 0);

    // Payloads that do not fit: short, unterminated, or a count past the payload.
    EXPECT_EQ(FirstUnit(Send(0x15, {1, 0})), 0xFFFF);
    EXPECT_EQ(FirstUnit(Send(0x30, {'P', 'A', 'T', 'H'})), 0xFFFF);
    EXPECT_EQ(FirstUnit(Send(0x3E, Ints({0, 0, 100000, 7}))), 0xFFFF);
    EXPECT_EQ(FirstUnit(Send(0x3E, Ints({0, 0, -5}))), 0xFFFF);

    // Variables both ways, and a description written and read back.
    EXPECT_EQ(FirstUnit(Send(0x31, Narrow("CALLTEST=yes"))), 0);
    EXPECT_EQ(NarrowAnswer(Send(0x30, Narrow("CALLTEST"))), "yes");
    std::vector<uint8_t> describe = Narrow(narrowPattern.substr(0, narrowPattern.size() - 5).append("one.txt").c_str());
    std::vector<uint8_t> text = Narrow("the first file");
    describe.insert(describe.end(), text.begin(), text.end());
    EXPECT_EQ(FirstInt(Send(0x29, describe)), 0);
    std::string oneTxt(narrowPattern.substr(0, narrowPattern.size() - 5) + "one.txt");
    EXPECT_EQ(NarrowAnswer(Send(0x2A, Narrow(oneTxt.c_str()))), "the first file");

    // Streams: only 0 to 2 are known, and standard error is never redirected.
    EXPECT_EQ(FirstInt(Send(0x3C, Ints({2}))), 0);
    EXPECT_EQ(FirstInt(Send(0x3C, Ints({5}))), -1);

    // A nested run answers with its ErrorLevel; the diagnostic form shows
    // the payload around the run.
    EXPECT_EQ(FirstInt(Send(0x3B, Narrow("set NESTED=7"))), 0);
    const std::wstring* nested = FindEnvironment(L"NESTED");
    ASSERT_NE(nested, nullptr);
    EXPECT_EQ(*nested, L"7");
    Send(0x46, Narrow("rem"));
    std::wstring shown;
    for (int row = 0; row < TheScreen.CursorY; ++row) shown += TheScreen.RowText(row) + L"\n";
    EXPECT_NE(shown.find(L"W_SYSTEMCALL2 received\nbyte size: 4\n"), std::wstring::npos) << shown;
    EXPECT_NE(shown.find(L"W_SYSTEMCALL2 leaving\norg byte size: 4\n"), std::wstring::npos) << shown;

    // A break turns every reply's code to 0x39 until it is cleared.
    TheScreen.BreakFlag = 1;
    EXPECT_EQ(Send(0x2D, {}).code, 0x39u);
    Send(0x27, {});
    Send(0x00, Narrow("x"));
    EXPECT_EQ(Send(0x2D, {}).code, 0x22u);
    Send(0x28, {});
    // A request bigger than the reply grows it.
    EXPECT_EQ(Send(0x2D, std::vector<uint8_t>(20000, 'a')).bytes.size(), 40000u);
}

// Requests worth mutating: each well formed to start with. Running command
// lines is left out, since a mutated line could run anything.
std::vector<std::pair<DWORD, std::vector<uint8_t>>> Seeds(const std::string& folder)
{
    std::vector<uint8_t> walk = Ints({0x10});
    std::string pattern = folder + "\\*";
    walk.insert(walk.end(), pattern.begin(), pattern.end());
    walk.push_back(0);
    std::vector<uint8_t> wideWalk = Ints({0});
    for (char c : pattern) wideWalk.insert(wideWalk.end(), {uint8_t(c), 0});
    wideWalk.insert(wideWalk.end(), {0, 0});
    return {
        {0x00, Narrow("text \x1b[31mred\x1b[0m\t\b\r\n")}, {0x03, Ints({3, 4})}, {0x07, {5}},
        {0x15, Ints({1})}, {0x1A, walk}, {0x1B, Ints({0})}, {0x1C, Ints({0})}, {0x1F, Narrow(pattern.c_str())},
        {0x20, Ints({0})}, {0x29, Narrow("f.txt\0desc")}, {0x30, Narrow("PATH")}, {0x31, Narrow("FUZZ=1")},
        {0x3D, Ints({0, 0, 80})}, {0x3E, Ints({1, 1, 3, 0x01020304})}, {0x3F, Ints({2, 2, 3, 0x00434241})},
        {0x41, Ints({0, 5, 1})}, {0x45, Narrow("a\0b\0c")}, {0x4C, Narrow("-12345678901")}, {0x76, wideWalk},
        {0x77, Ints({0})}, {0x8A, Ints({0, 0, 2, 0x00420041, 0})}, {0x8C, Ints({0, 0, 10})},
        {0x7E, {'A', 0, '=', 0, 'B', 0, 0, 0}}, {0x1D, Ints({1})}, {0x4A, Ints({100, 0})}, {0x4B, Ints({5, 0})},
    };
}

void Mutate(std::vector<uint8_t>& bytes, std::mt19937& random)
{
    static const int32_t kExtremes[] = {-1, 0, 1, INT_MIN, INT_MAX, 0x7FFF, 65536, 4096, -4096};
    switch (random() % 5) {
    case 0:
        if (!bytes.empty()) bytes.resize(random() % bytes.size());
        break;
    case 1:
        if (!bytes.empty()) bytes[random() % bytes.size()] = uint8_t(random());
        break;
    case 2:
        if (bytes.size() >= 4) {
            int32_t value = kExtremes[random() % (sizeof(kExtremes) / sizeof(kExtremes[0]))];
            std::memcpy(&bytes[(random() % (bytes.size() / 4)) * 4], &value, 4);
        }
        break;
    case 3:
        for (uint8_t& b : bytes)
            if (b == 0) b = 'z';
        break;
    default:
        for (int n = int(random() % 16); n > 0; --n) bytes.push_back(uint8_t(random()));
    }
}

// Codes that run command lines or walk every drive are not sent at random.
bool Excluded(DWORD code) { return code == 0x3B || code == 0x46 || code == 0x86 || code == 0x87 || code == 0x26 || code == 0x7C; }

TEST(SystemCall, FuzzedRequestsNeitherCrashNorHang)
{
    constexpr int kRequests = 100000;
    TempFolder f;
    SetCurrentDirectoryW(f.Path().c_str());
    CreateDirectoryW((f.Path() + L"\\sub").c_str(), nullptr);
    f.WriteBytes(L"f.txt", "x");
    ArgumentsParsed parsed(L"tool a b c");
    ServedProgram served(GetCurrentProcessId());
    std::string folder(f.Path().begin(), f.Path().end());
    auto seeds = Seeds(folder);
    std::mt19937 random(16);
    int answered = 0;
    for (int i = 0; i < kRequests; ++i) {
        DWORD code;
        std::vector<uint8_t> payload;
        if (random() % 2) {
            const auto& seed = seeds[random() % seeds.size()];
            code = seed.first;
            payload = seed.second;
            Mutate(payload, random);
        } else {
            code = random() % 8 == 0 ? DWORD(random()) : DWORD(random() % 0x95);
            payload.resize(random() % 40);
            for (uint8_t& b : payload) b = uint8_t(random());
        }
        if (Excluded(code)) continue;
        TheScreen.BreakFlag = 0;
        TheScreen.Paging = 0;
        if (Send(code, payload).came) ++answered;
    }
    TheScreen.BreakFlag = 0;
    SetCurrentDirectoryW(L"\\");
    EXPECT_GT(answered, kRequests / 2);
}

} // namespace
