#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "screen/text_sink.h"

#include <string>

// An empty or unusable file counts as code-page text; otherwise the first 128
// bytes decide, and the file position ends behind any byte-order mark.
int RedirectFile::SniffEncoding()
{
    unsigned char head[128];
    DWORD got = 0;
    SetFilePointer(file_.get(), 0, nullptr, FILE_BEGIN);
    if (!ReadFile(file_.get(), head, sizeof(head), &got, nullptr) || got == 0) return CodePageText;
    if (got >= 2) {
        for (DWORD i = 0; i + 1 < got && i < got / 2; i += 2)
            if (head[i] == 0 && head[i + 1] == 0) return NotText;
        if (head[0] == 0xFF && head[1] == 0xFE) return Utf16Le;
        if (head[0] == 0xFE && head[1] == 0xFF) return Utf16Be;
        if (got >= 3 && head[0] == 0xEF && head[1] == 0xBB && head[2] == 0xBF) return Utf8Text;
    }
    for (DWORD i = 0; i < got; ++i)
        if (head[i] == 0) return NotText;
    return CodePageText;
}

void RedirectFile::Adopt(HANDLE file, bool unicode)
{
    Close();
    file_.reset(file);
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file, &size) || size.QuadPart == 0) {
        encoding_ = unicode ? Utf16Le : CodePageText;
        if (unicode) WriteBytes("\xFF\xFE", 2);
        return;
    }
    encoding_ = SniffEncoding();
    SetFilePointer(file, 0, nullptr, FILE_END);
}

void RedirectFile::Close() { file_.reset(); }

void RedirectFile::WriteBytes(const void* bytes, DWORD size)
{
    if (!file_ || size == 0) return;
    DWORD written = 0;
    if (WriteFile(file_.get(), bytes, size, &written, nullptr) && written == size) return;
    // A failed write is reported once; the stream then closes and later text
    // is dropped without a word.
    TheErrors.ReportErrno();
    Close();
}

void RedirectFile::WriteText(const wchar_t* text, int units)
{
    if (!file_ || units <= 0) return;
    if (encoding_ == Utf16Le) {
        WriteBytes(text, DWORD(units) * sizeof(wchar_t));
        return;
    }
    if (encoding_ == Utf16Be) {
        std::wstring swapped(text, size_t(units));
        SwapBytes(swapped.data(), units);
        WriteBytes(swapped.data(), DWORD(units) * sizeof(wchar_t));
        return;
    }
    UINT codePage = encoding_ == Utf8Text ? CP_UTF8 : CodePageOf(ActiveCodePage);
    int size = WideCharToMultiByte(codePage, 0, text, units, nullptr, 0, nullptr, nullptr);
    if (size <= 0) return;
    std::string bytes(size_t(size), '\0');
    WideCharToMultiByte(codePage, 0, text, units, bytes.data(), size, nullptr, nullptr);
    WriteBytes(bytes.data(), DWORD(size));
}
