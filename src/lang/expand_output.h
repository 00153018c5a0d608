// The output side of an expansion: a fixed buffer that takes text until it
// holds size - 1 units and then drops the rest without a word.
#pragma once

class ExpandOutput {
public:
    ExpandOutput(wchar_t* buffer, int size) : buffer_(buffer), size_(size) { Terminate(); }

    void Put(wchar_t unit)
    {
        if (length_ < size_ - 1) buffer_[length_++] = unit;
        Terminate();
    }
    void Put(const wchar_t* from, const wchar_t* to)
    {
        while (from < to) Put(*from++);
    }
    void Put(const wchar_t* text)
    {
        while (*text) Put(*text++);
    }
    const wchar_t* Text() const { return buffer_; }

private:
    void Terminate()
    {
        if (size_ > 0) buffer_[length_ < size_ ? length_ : size_ - 1] = 0;
    }

    wchar_t* buffer_;
    int size_;
    int length_ = 0;
};
