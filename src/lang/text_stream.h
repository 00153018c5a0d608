// TextStream: a buffered file that knows its text encoding. Redirection, the
// batch loader, for /f, type and readln all read and write text through it.
//
// Encodings: 0 not text, 1 the current code page, 2 UTF-16 little-endian,
// 3 UTF-16 big-endian, 4 UTF-8. Lines end at LF; CR is dropped wherever it
// stands; character 26 ends the line and the file; a tab becomes a blank
// unless KeepTabs is set; a line longer than LineCapacity is returned in
// pieces, the next read going on in the middle of the physical line.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

enum TextEncoding : int32_t {
    NotText = 0,
    CodePageText = 1,
    Utf16LE = 2,
    Utf16BE = 3,
    Utf8Text = 4,
};

class TextStream {
public:
    TextStream() = default;
    TextStream(const TextStream&) = delete;
    TextStream& operator=(const TextStream&) = delete;
    virtual ~TextStream();

    int32_t BytesConsumed = 0; // bytes taken by the last line read
    wchar_t Path[260] = {};
    int64_t FileSize = 0;
    int32_t LineCapacity = 1024;
    int32_t LinesRead = 0;
    int32_t ReportErrors = 0;
    int32_t Encoding = CodePageText;
    int32_t KeepTabs = 0;

    bool Open(const wchar_t* path, DWORD access, DWORD sharing, DWORD disposition);
    // A new file for writing, replacing any file of that name.
    bool Create(const wchar_t* path);
    // Takes ownership of an open handle.
    void Adopt(HANDLE handle);
    // A new, empty temporary file in directory (the system's when null).
    bool OpenTemporary(const wchar_t* directory);
    void Close();
    bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE Handle() const { return handle_; }

    // Up to size bytes from the current position; the count read.
    int ReadRaw(void* buffer, int size);
    // The next line, or null at the end of the file. Valid until the next read.
    const wchar_t* ReadLine();
    // Writes text in the stream's encoding; false (and closed) on failure.
    bool Write(const wchar_t* text);
    bool Write(const wchar_t* text, int units);
    // Moves to a byte position; the end flag and the buffer are cleared.
    bool Seek(int64_t position);
    // Reads the start of the file to decide its encoding, leaving the
    // position behind a byte-order mark. Empty or unusable: code page text.
    int32_t SniffEncoding();
    // The mark of the current encoding (UTF-16 and UTF-8 have one).
    bool WriteMark();
    // Moves to the end to append. A UTF-16 file of odd length gets one zero
    // byte first, so what follows starts on a whole unit and stays readable.
    bool SeekEndToAppend();
    // The file's size now.
    int64_t CurrentSize() const;

protected:
    // The two ways of reading a line; type and more bring their own.
    virtual bool ReadNarrowLine(std::wstring& line);
    virtual bool ReadWideLine(std::wstring& line);
    // Next byte of the file, or -1 at its end.
    int NextByte();
    void ReportFailure();

private:
    bool Fill();
    bool WriteBytes(const void* data, DWORD size);

    HANDLE handle_ = INVALID_HANDLE_VALUE;
    std::vector<unsigned char> buffer_;
    size_t position_ = 0;
    size_t fill_ = 0;
    bool endReached_ = false;
    int64_t bufferFilePosition_ = 0;
    std::wstring line_;
    std::string narrow_; // the bytes of the line being read, kept to reuse
};
