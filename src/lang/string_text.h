// The pieces the string commands share: their text operand taken from the
// raw Tail, leading operands, and the character boundaries by which they
// count (a surrogate pair, or a letter with its combining marks, is one
// character, as on the screen).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The stage's Tail, cut to the 4095 units of a work buffer.
std::wstring TailText();
// The text behind the first word of text: blanks, the word (quoted or not)
// and exactly one more unit; further blanks belong to the text.
const wchar_t* BehindWord(const wchar_t* text);
// The number at the start of text (after blanks), with base detection: 0x
// for hexadecimal, a leading 0 for octal.
int64_t LeadingNumber(const wchar_t* text);
// The unit index where each character starts, and the length last.
std::vector<int> CharacterStarts(const std::wstring& text);
// Characters first to first + count - 1 (0-based, clipped to the text).
std::wstring Characters(const std::wstring& text, const std::vector<int>& starts, int64_t first, int64_t count);
// Sets the result variable, cut to 4095 units; an empty value deletes it.
void SetResult(const wchar_t* name, const std::wstring& value);
