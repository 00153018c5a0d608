// The redirected standard input of a statement: a file the readers take keys
// and lines from in place of the keyboard. Only a byte-order mark is looked
// for: FF FE is UTF-16, FE FF byte-swapped UTF-16, anything else is read a
// byte at a time in the code page. An empty file gives no data at all.
#pragma once

#include <windows.h>

#include <cstdint>

class RedirectedInput {
public:
    enum Encoding { NoData = 0, Narrow = 1, Wide = 2, Swapped = 3 };

    RedirectedInput() = default;
    RedirectedInput(const RedirectedInput&) = delete;
    RedirectedInput& operator=(const RedirectedInput&) = delete;
    ~RedirectedInput() { Close(); }

    // Opens an existing file; false when it cannot be opened.
    bool Open(const wchar_t* fileName);
    void Close();
    bool IsOpen() const { return file_ != INVALID_HANDLE_VALUE; }
    int FileEncoding() const { return encoding_; }
    // The open file, for a reader that takes the input whole (more).
    HANDLE Handle() const { return file_; }

    // The next unit by the file's encoding: a narrow byte is widened with its
    // sign, as the system always did; no data reads as Ctrl-Z. False at the
    // end of the file.
    bool NextUnit(wchar_t& unit);

private:
    bool NextByte(uint8_t& byte);

    HANDLE file_ = INVALID_HANDLE_VALUE;
    int encoding_ = NoData;
    uint8_t buffer_[4096] = {};
    DWORD filled_ = 0;
    DWORD position_ = 0;
};
