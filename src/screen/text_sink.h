// Where redirected output goes. The writer only needs to hand text over and
// to close; the stream behind it chooses the encoding.
#pragma once

#include "app/toolkit/handles.h"

#include <windows.h>

class TextSink {
public:
    virtual ~TextSink() = default;
    // Writes the text in the sink's encoding; failures are the sink's own
    // business (reported once, then the text is dropped).
    virtual void WriteText(const wchar_t* text, int units) = 0;
    virtual void Close() = 0;
};

// Encodings of a text file: 0 not text, 1 the current code page, 2 UTF-16
// little-endian, 3 UTF-16 big-endian, 4 UTF-8.
enum TextEncoding { NotText = 0, CodePageText = 1, Utf16Le = 2, Utf16Be = 3, Utf8Text = 4 };

// The redirection target of the writer: an adopted file handle.
class RedirectFile : public TextSink {
public:
    // Takes the handle over. An empty file (or one whose size cannot be
    // read) gets UTF-16 with a byte-order mark when unicode is set, else the
    // code page; a file with content keeps its own encoding and is appended to.
    void Adopt(HANDLE file, bool unicode);
    void WriteText(const wchar_t* text, int units) override;
    void Close() override;
    int Encoding() const { return encoding_; }

private:
    void WriteBytes(const void* bytes, DWORD size);
    int SniffEncoding();

    UniqueFile file_;
    int encoding_ = CodePageText;
};
