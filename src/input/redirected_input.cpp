#include "input/redirected_input.h"

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
    case Narrow:
        if (!NextByte(low)) return false;
        unit = wchar_t(int16_t(int8_t(low)));
        return true;
    case Wide:
    case Swapped:
        if (!NextByte(low) || !NextByte(high)) return false;
        unit = encoding_ == Wide ? wchar_t(low | (high << 8)) : wchar_t(high | (low << 8));
        return true;
    default: unit = 0x1A; return true;
    }
}
