// Keys typed while the shell waits for a program it started. They wait here
// for the program to ask for them (the console loader and external commands
// read keys by request); the queue is emptied when the wait ends, so the
// shell's own line starts empty afterwards. Keys without a character (arrows,
// Home, End, Insert, Delete, page and function keys) are queued as the
// escape sequences a terminal sends for them.
#pragma once

#include <cstddef>
#include <deque>

class ProgramKeyQueue {
public:
    // Typing ahead is bounded: keys past this are dropped.
    static constexpr size_t kLimit = 256;

    void Push(wchar_t unit)
    {
        if (keys_.size() < kLimit) keys_.push_back(unit);
    }
    // The next key without taking it; 0 when none waits.
    wchar_t Peek() const { return keys_.empty() ? 0 : keys_.front(); }
    // The next key, taken; 0 when none waits.
    wchar_t Take()
    {
        if (keys_.empty()) return 0;
        wchar_t unit = keys_.front();
        keys_.pop_front();
        return unit;
    }
    void Clear() { keys_.clear(); }
    // Queues the sequence of a key without a character; false for other keys.
    bool PushKey(unsigned virtualKey);

private:
    std::deque<wchar_t> keys_;
};

extern ProgramKeyQueue TheProgramKeys;
