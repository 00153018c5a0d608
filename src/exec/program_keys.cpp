#include "exec/program_keys.h"

#include <windows.h>

#include <cwchar>

namespace {

struct KeySequence {
    unsigned VirtualKey;
    const wchar_t* Text;
};

constexpr KeySequence kSequences[] = {
    {VK_UP, L"\x1b[A"},     {VK_DOWN, L"\x1b[B"},    {VK_RIGHT, L"\x1b[C"},   {VK_LEFT, L"\x1b[D"},
    {VK_HOME, L"\x1b[H"},   {VK_END, L"\x1b[F"},     {VK_INSERT, L"\x1b[2~"}, {VK_DELETE, L"\x1b[3~"},
    {VK_PRIOR, L"\x1b[5~"}, {VK_NEXT, L"\x1b[6~"},   {VK_F1, L"\x1bOP"},      {VK_F2, L"\x1bOQ"},
    {VK_F3, L"\x1bOR"},     {VK_F4, L"\x1bOS"},      {VK_F5, L"\x1b[15~"},    {VK_F6, L"\x1b[17~"},
    {VK_F7, L"\x1b[18~"},   {VK_F8, L"\x1b[19~"},    {VK_F9, L"\x1b[20~"},    {VK_F10, L"\x1b[21~"},
    {VK_F11, L"\x1b[23~"},  {VK_F12, L"\x1b[24~"},
};

} // namespace

bool ProgramKeyQueue::PushKey(unsigned virtualKey)
{
    for (const KeySequence& key : kSequences) {
        if (key.VirtualKey != virtualKey) continue;
        // A sequence goes in whole or not at all.
        size_t length = std::wcslen(key.Text);
        if (keys_.size() + length > kLimit) return true;
        for (const wchar_t* p = key.Text; *p; ++p) keys_.push_back(*p);
        return true;
    }
    return false;
}
