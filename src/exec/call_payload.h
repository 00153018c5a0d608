// The payload of one request from another program, read front to back. Every
// read checks what is left of the bytes the message really carried; a read
// that does not fit fails and leaves nothing half-read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

class CallPayload {
public:
    CallPayload(const void* data, size_t size) : data_(static_cast<const uint8_t*>(data)), size_(data ? size : 0) {}

    size_t Left() const { return size_ - at_; }

    bool Int(int32_t& value)
    {
        if (Left() < 4) return false;
        std::memcpy(&value, data_ + at_, 4);
        at_ += 4;
        return true;
    }

    bool Byte(uint8_t& value)
    {
        if (Left() < 1) return false;
        value = data_[at_++];
        return true;
    }

    // count raw bytes, or null when fewer are left.
    const uint8_t* Bytes(size_t count)
    {
        if (count > Left()) return nullptr;
        const uint8_t* start = data_ + at_;
        at_ += count;
        return start;
    }

    // 8-bit text up to its 0; false when no 0 stands within the payload.
    bool NarrowText(std::string& text)
    {
        if (Left() == 0) return false;
        const void* end = std::memchr(data_ + at_, 0, Left());
        if (!end) return false;
        size_t length = size_t(static_cast<const uint8_t*>(end) - (data_ + at_));
        text.assign(reinterpret_cast<const char*>(data_ + at_), length);
        at_ += length + 1;
        return true;
    }

    // UTF-16 text up to its 0 character; false when none stands within.
    bool WideText(std::wstring& text)
    {
        text.clear();
        while (Left() >= 2) {
            wchar_t unit = wchar_t(data_[at_] | (data_[at_ + 1] << 8));
            at_ += 2;
            if (unit == 0) return true;
            text += unit;
        }
        return false;
    }

    // The rest as 8-bit text, ending at a 0 or at the end of the payload.
    std::string NarrowRest()
    {
        std::string text;
        while (Left() > 0 && data_[at_] != 0) text += char(data_[at_++]);
        at_ = size_;
        return text;
    }

    // The rest as UTF-16 text, ending at a 0 or at the end of the payload.
    std::wstring WideRest()
    {
        std::wstring text;
        while (Left() >= 2) {
            wchar_t unit = wchar_t(data_[at_] | (data_[at_ + 1] << 8));
            at_ += 2;
            if (unit == 0) break;
            text += unit;
        }
        at_ = size_;
        return text;
    }

private:
    const uint8_t* data_;
    size_t size_;
    size_t at_ = 0;
};
