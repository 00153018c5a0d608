#include "input/redirected_input.h"

#include "app/toolkit/omdib.h"

bool RedirectedInput::Open(const wchar_t* fileName)
{
    Close();
    file_ = CreateFileW(fileName, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file_ == INVALID_HANDLE_VALUE) return false;
    DWORD got = 0;
    if (!ReadFile(file_, buffer_, 2, &got, nullptr)) got = 0;
    filled_ = got;
    position_ = 0;
    encoding_ = got == 0 ? NoData : Narrow;
    if (got == 2 && buffer_[0] == 0xFF && buffer_[1] == 0xFE) encoding_ = Wide;
    if (got == 2 && buffer_[0] == 0xFE && buffer_[1] == 0xFF) encoding_ = Swapped;
    // A mark is skipped; other bytes are text and are read again.
    if (encoding_ == Wide || encoding_ == Swapped) position_ = 2;
    return true;
}

void RedirectedInput::Close()
{
    if (file_ != INVALID_HANDLE_VALUE) CloseHandle(file_);
    file_ = INVALID_HANDLE_VALUE;
    encoding_ = NoData;
    filled_ = position_ = 0;
    pendingUnit_ = 0;
}

bool RedirectedInput::NextByte(uint8_t& byte)
{
    if (position_ >= filled_) {
        DWORD got = 0;
        filled_ = position_ = 0;
        if (!ReadFile(file_, buffer_, DWORD(sizeof(buffer_)), &got, nullptr) || got == 0) return false;
        filled_ = got;
    }
    byte = buffer_[position_++];
    return true;
}

bool RedirectedInput::NextUnit(wchar_t& unit)
{
    if (!IsOpen()) return false;
    uint8_t low = 0, high = 0;
    switch (encoding_) {
    case Narrow: return NextNarrowUnit(unit);
    case Wide:
    case Swapped:
        if (!NextByte(low) || !NextByte(high)) return false;
        unit = encoding_ == Wide ? wchar_t(low | (high << 8)) : wchar_t(high | (low << 8));
        return true;
    default: unit = 0x1A; return true;
    }
}

// A character of the code page may take more than one byte: a lead byte of a
// double-byte page takes one more, and UTF-8 up to four, which may give two
// units. A sequence cut short is converted as far as it goes.
bool RedirectedInput::NextNarrowUnit(wchar_t& unit)
{
    if (pendingUnit_) {
        unit = pendingUnit_;
        pendingUnit_ = 0;
        return true;
    }
    uint8_t bytes[4];
    if (!NextByte(bytes[0])) return false;
    if (bytes[0] < 0x80) {
        unit = bytes[0];
        return true;
    }
    UINT codePage = CodePageOf(ActiveCodePage);
    int length = 1;
    if (codePage == CP_UTF8) length = bytes[0] >= 0xF0 ? 4 : bytes[0] >= 0xE0 ? 3 : bytes[0] >= 0xC0 ? 2 : 1;
    else if (IsDBCSLeadByteEx(codePage, bytes[0])) length = 2;
    int got = 1;
    while (got < length && NextByte(bytes[got])) {
        // In UTF-8 a byte that continues nothing starts the next character.
        if (codePage == CP_UTF8 && (bytes[got] & 0xC0) != 0x80) {
            --position_;
            break;
        }
        ++got;
    }
    wchar_t units[2] = {0xFFFD, 0};
    int n = MultiByteToWideChar(codePage, 0, reinterpret_cast<const char*>(bytes), got, units, 2);
    unit = n > 0 ? units[0] : wchar_t(0xFFFD);
    if (n == 2) pendingUnit_ = units[1];
    return true;
}
