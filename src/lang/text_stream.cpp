#include "lang/text_stream.h"

#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "lang/environment_index.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr size_t kBufferSize = 1 << 16;
constexpr int kEndOfFileMark = 26;

// Code pages that read the bytes below 128 as those characters, so that a
// line of such bytes needs no conversion call.
bool KeepsAscii(UINT codePage)
{
    if (codePage == CP_ACP) codePage = GetACP();
    else if (codePage == CP_OEMCP) codePage = GetOEMCP();
    if (codePage == CP_UTF8 || (codePage >= 1250 && codePage <= 1258)) return true;
    if ((codePage >= 28591 && codePage <= 28599) || codePage == 28603 || codePage == 28605) return true;
    static const UINT kPages[] = {437, 720, 737, 775, 850, 852, 855, 857, 858, 860, 861,
                                  862, 863, 865, 866, 869, 874, 932, 936, 949, 950};
    return std::find(std::begin(kPages), std::end(kPages), codePage) != std::end(kPages);
}

} // namespace

TextStream::~TextStream() { Close(); }

void TextStream::ReportFailure()
{
    if (ReportErrors) TheErrors.ReportErrno();
}

bool TextStream::Open(const wchar_t* path, DWORD access, DWORD sharing, DWORD disposition)
{
    Close();
    CopyCutW(Path, path, 260);
    HANDLE h = CreateFileW(path, access, sharing, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) {
        ReportFailure();
        return false;
    }
    Adopt(h);
    return true;
}

bool TextStream::Create(const wchar_t* path)
{
    return Open(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS);
}

void TextStream::Adopt(HANDLE handle)
{
    Close();
    handle_ = handle;
    LARGE_INTEGER size{};
    FileSize = GetFileSizeEx(handle, &size) ? size.QuadPart : 0;
    LARGE_INTEGER here{}, zero{};
    bufferFilePosition_ = SetFilePointerEx(handle, zero, &here, FILE_CURRENT) ? here.QuadPart : 0;
    position_ = fill_ = 0;
    endReached_ = false;
    LinesRead = 0;
}

bool TextStream::OpenTemporary(const wchar_t* directory)
{
    wchar_t folder[kPathMax];
    SyncEnvironment();
    if (directory) CopyCutW(folder, directory, kPathMax);
    else if (!GetTempPathW(kPathMax, folder)) lstrcpyW(folder, L".");
    wchar_t name[kPathMax];
    if (!GetTempFileNameW(folder, L"TMP", 0, name)) return false;
    return Open(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, CREATE_ALWAYS);
}

void TextStream::Close()
{
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
    handle_ = INVALID_HANDLE_VALUE;
    position_ = fill_ = 0;
    endReached_ = false;
}

int64_t TextStream::CurrentSize() const
{
    LARGE_INTEGER size{};
    return (IsOpen() && GetFileSizeEx(handle_, &size)) ? size.QuadPart : 0;
}

bool TextStream::Fill()
{
    if (endReached_ || !IsOpen()) return false;
    if (buffer_.empty()) buffer_.resize(kBufferSize);
    bufferFilePosition_ += int64_t(fill_);
    position_ = fill_ = 0;
    DWORD got = 0;
    if (!ReadFile(handle_, buffer_.data(), DWORD(buffer_.size()), &got, nullptr) || got == 0) {
        endReached_ = true;
        return false;
    }
    fill_ = got;
    return true;
}

int TextStream::NextByte()
{
    if (position_ >= fill_ && !Fill()) return -1;
    return buffer_[position_++];
}

int TextStream::ReadRaw(void* out, int size)
{
    auto* bytes = static_cast<unsigned char*>(out);
    int n = 0;
    for (int b; n < size && (b = NextByte()) >= 0;) bytes[n++] = static_cast<unsigned char>(b);
    return n;
}

bool TextStream::Seek(int64_t position)
{
    if (!IsOpen()) return false;
    LARGE_INTEGER to;
    to.QuadPart = position;
    position_ = fill_ = 0;
    endReached_ = false;
    if (!SetFilePointerEx(handle_, to, nullptr, FILE_BEGIN)) return false;
    bufferFilePosition_ = position;
    return true;
}

int32_t TextStream::SniffEncoding()
{
    Encoding = CodePageText;
    if (!IsOpen() || CurrentSize() == 0) return Encoding;
    Seek(0);
    unsigned char head[128];
    int n = ReadRaw(head, sizeof(head));
    Seek(0);
    if (n < 2) return Encoding;
    // A zero unit anywhere in the first half means binary, even behind a mark.
    for (int i = 0; i + 1 < n && i < n / 2; i += 2)
        if (head[i] == 0 && head[i + 1] == 0) return Encoding = NotText;
    if (head[0] == 0xFF && head[1] == 0xFE) {
        Seek(2);
        return Encoding = Utf16LE;
    }
    if (head[0] == 0xFE && head[1] == 0xFF) {
        Seek(2);
        return Encoding = Utf16BE;
    }
    if (n >= 3 && head[0] == 0xEF && head[1] == 0xBB && head[2] == 0xBF) {
        Seek(3);
        return Encoding = Utf8Text;
    }
    for (int i = 0; i < n; ++i)
        if (head[i] == 0) return Encoding = NotText;
    return Encoding;
}

bool TextStream::ReadNarrowLine(std::wstring& line)
{
    if (position_ >= fill_ && !Fill()) return false;
    std::string& bytes = narrow_;
    bytes.clear();
    UINT codePage = Encoding == Utf8Text ? CP_UTF8 : CodePageOf(ActiveCodePage);
    // Text without a mark is UTF-8 too after "chcp 65001".
    bool utf8 = codePage == CP_UTF8;
    int chars = 0;
    unsigned char seen = 0; // the bytes taken, or-ed together
    for (;;) {
        if (position_ >= fill_ && !Fill()) break;
        // A run of bytes that need no decision is taken at once.
        size_t run = position_;
        bool full = false;
        while (run < fill_ && !full) {
            unsigned char b = buffer_[run];
            if (b == '\n' || b == '\r' || b == '\t' || b == kEndOfFileMark) break;
            ++run;
            seen |= b;
            // In UTF-8 only lead bytes start a character.
            if (!utf8 || (b & 0xC0) != 0x80) full = ++chars >= LineCapacity;
        }
        bytes.append(reinterpret_cast<const char*>(buffer_.data() + position_), run - position_);
        BytesConsumed += int32_t(run - position_);
        position_ = run;
        if (!full) {
            if (position_ >= fill_) continue;
            unsigned char b = buffer_[position_++];
            ++BytesConsumed;
            if (b == '\n') break;
            if (b == '\r') continue;
            if (b == kEndOfFileMark) {
                endReached_ = true;
                position_ = fill_;
                break;
            }
            bytes += KeepTabs ? '\t' : ' ';
            if (++chars < LineCapacity) continue;
        }
        // Keep the continuation bytes of the last character together.
        if (utf8)
            while (position_ < fill_ && (buffer_[position_] & 0xC0) == 0x80) {
                bytes += static_cast<char>(buffer_[position_++]);
                seen |= 0x80;
                ++BytesConsumed;
            }
        break;
    }
    line.clear();
    if (bytes.empty()) return true;
    if (!(seen & 0x80) && KeepsAscii(codePage)) {
        line.assign(bytes.begin(), bytes.end());
        return true;
    }
    int n = MultiByteToWideChar(codePage, 0, bytes.data(), int(bytes.size()), nullptr, 0);
    line.resize(size_t(n));
    MultiByteToWideChar(codePage, 0, bytes.data(), int(bytes.size()), line.data(), n);
    return true;
}

bool TextStream::ReadWideLine(std::wstring& line)
{
    line.clear();
    int lo = NextByte();
    if (lo < 0) return false;
    for (;;) {
        int hi = NextByte();
        if (hi < 0) break; // an odd last byte is dropped
        BytesConsumed += 2;
        wchar_t c = Encoding == Utf16BE ? wchar_t((lo << 8) | hi) : wchar_t((hi << 8) | lo);
        if (c == L'\n') break;
        if (c != L'\r') {
            if (c == kEndOfFileMark) {
                endReached_ = true;
                position_ = fill_;
                break;
            }
            line += (c == L'\t' && !KeepTabs) ? L' ' : c;
            if (int(line.size()) >= LineCapacity) break;
        }
        lo = NextByte();
        if (lo < 0) break;
    }
    return true;
}

const wchar_t* TextStream::ReadLine()
{
    BytesConsumed = 0;
    bool got = (Encoding == Utf16LE || Encoding == Utf16BE) ? ReadWideLine(line_) : ReadNarrowLine(line_);
    if (!got) return nullptr;
    ++LinesRead;
    return line_.c_str();
}

bool TextStream::WriteBytes(const void* data, DWORD size)
{
    DWORD written = 0;
    if (!IsOpen()) return false;
    if (WriteFile(handle_, data, size, &written, nullptr) && written == size) return true;
    ReportFailure();
    Close();
    return false;
}

bool TextStream::Write(const wchar_t* text) { return Write(text, lstrlenW(text)); }

bool TextStream::Write(const wchar_t* text, int units)
{
    if (units <= 0) return IsOpen();
    if (Encoding == Utf16LE) return WriteBytes(text, DWORD(units) * 2);
    if (Encoding == Utf16BE) {
        std::wstring swapped(text, size_t(units));
        SwapBytes(swapped.data(), units);
        return WriteBytes(swapped.data(), DWORD(units) * 2);
    }
    UINT codePage = Encoding == Utf8Text ? CP_UTF8 : CodePageOf(ActiveCodePage);
    int n = WideCharToMultiByte(codePage, 0, text, units, nullptr, 0, nullptr, nullptr);
    std::string bytes(size_t(n), '\0');
    WideCharToMultiByte(codePage, 0, text, units, bytes.data(), n, nullptr, nullptr);
    return WriteBytes(bytes.data(), DWORD(n));
}

bool TextStream::WriteMark()
{
    static const unsigned char le[] = {0xFF, 0xFE}, be[] = {0xFE, 0xFF}, utf8[] = {0xEF, 0xBB, 0xBF};
    switch (Encoding) {
    case Utf16LE: return WriteBytes(le, 2);
    case Utf16BE: return WriteBytes(be, 2);
    case Utf8Text: return WriteBytes(utf8, 3);
    default: return true;
    }
}

bool TextStream::SeekEndToAppend()
{
    int64_t size = CurrentSize();
    if (!Seek(size)) return false;
    bool wide = Encoding == Utf16LE || Encoding == Utf16BE;
    if (!wide || size % 2 == 0) return true;
    static const unsigned char pad = 0;
    return WriteBytes(&pad, 1);
}
