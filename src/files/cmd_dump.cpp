// dump: a file in hexadecimal and as text, 16 bytes a line, paged and
// breakable: dump file [offset [length]]. Offset and length are decimal, or
// hexadecimal with "0x"; an offset past the end is message 40.
#include "app/errors.h"
#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"
#include "files/arg_paths.h"
#include "files/long_path.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/colours.h"
#include "screen/pager.h"
#include "screen/screen_store.h"

#include <cwchar>
#include <vector>

namespace {

constexpr int kLineBytes = 16;
constexpr DWORD kChunk = 64 * 1024;

bool ReadNumber(const wchar_t* text, uint64_t& value)
{
    const wchar_t* end = nullptr;
    bool hex = text[0] == L'0' && (text[1] == L'x' || text[1] == L'X');
    int64_t n = lstrtoi64W(hex ? text + 2 : text, &end, hex ? 16 : 10);
    if (!*text || *end || n < 0) return false;
    value = uint64_t(n);
    return true;
}

void WriteDumpLine(uint64_t offset, const unsigned char* bytes, int count)
{
    wchar_t text[96];
    std::swprintf(text, 96, L"%08llX  ", static_cast<unsigned long long>(offset));
    UseItem(Item::Number);
    TheScreen.Write(text);
    int n = 0;
    for (int i = 0; i < kLineBytes; ++i) {
        if (i < count) n += std::swprintf(text + n, 96 - n, L"%02X ", unsigned(bytes[i]));
        else n += std::swprintf(text + n, 96 - n, L"   ");
        if (i == 7) text[n++] = L' ';
    }
    text[n] = 0;
    UseItem(Item::Text);
    TheScreen.Write(text);
    for (int i = 0; i < count; ++i) text[i] = (bytes[i] >= 0x20 && bytes[i] < 0x7F) ? wchar_t(bytes[i]) : L'.';
    text[count] = 0;
    UseItem(Item::HighText);
    TheScreen.Write(L" ");
    TheScreen.Write(text);
    TheScreen.NewLine();
}

} // namespace

void CmdDump()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount < 1 || CommandArgs.ArgCount > 3) return ReportId(1);
    uint64_t offset = 0, length = UINT64_MAX;
    if (CommandArgs.ArgCount >= 2 && !ReadNumber(CommandArgs.Args[1], offset)) return ReportId(40);
    if (CommandArgs.ArgCount == 3 && !ReadNumber(CommandArgs.Args[2], length)) return ReportId(9);
    std::wstring path = ArgRawPath(1);
    std::wstring holder;
    UniqueFile file(CreateFileW(PlatformPath(path.c_str(), holder), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) return ReportId(3);
    LARGE_INTEGER size{};
    GetFileSizeEx(file.get(), &size);
    if (offset > uint64_t(size.QuadPart) || (offset == uint64_t(size.QuadPart) && size.QuadPart != 0))
        return ReportId(40);
    LARGE_INTEGER to;
    to.QuadPart = int64_t(offset);
    SetFilePointerEx(file.get(), to, nullptr, FILE_BEGIN);
    ListingPager pager;
    std::vector<unsigned char> buffer(kChunk);
    while (length > 0 && !TheScreen.BreakFlag) {
        DWORD want = DWORD(length < kChunk ? length : kChunk);
        DWORD got = 0;
        if (!ReadFile(file.get(), buffer.data(), want, &got, nullptr)) return TheErrors.ReportPlatformError(GetLastError());
        if (got == 0) break;
        for (DWORD at = 0; at < got && !TheScreen.BreakFlag; at += kLineBytes) {
            int count = int(got - at < DWORD(kLineBytes) ? got - at : DWORD(kLineBytes));
            WriteDumpLine(offset, buffer.data() + at, count);
            offset += uint64_t(count);
        }
        length -= got;
    }
}
