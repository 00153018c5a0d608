#include "vt_translator.h"

#include "app/toolkit/whole_characters.h"

#include <windows.h>

#include <cstdlib>
#include <vector>

namespace {

constexpr wchar_t kEsc = 27;
// A sequence longer than this is no sequence: its ESC is dropped.
constexpr size_t kLongestSequence = 256;

std::vector<int> Numbers(const std::wstring& body)
{
    std::vector<int> numbers;
    const wchar_t* p = body.c_str();
    for (;;) {
        numbers.push_back(std::wcstol(p, const_cast<wchar_t**>(&p), 10));
        if (*p != L';') break;
        ++p;
    }
    return numbers;
}

void Emit(std::wstring& out, int count, wchar_t final)
{
    out += kEsc;
    out += L'[';
    if (count != 1) out += std::to_wstring(count);
    out += final;
}

} // namespace

VtTranslator::VtTranslator(unsigned codePage, int width, int height)
    : codePage_(codePage), width_(width), height_(height)
{
    if (codePage_ == CP_UTF8 || !GetCPInfo(codePage_, &pageInfo_)) pageInfo_.MaxCharSize = 1;
}

std::wstring VtTranslator::Decode(const char* bytes, size_t count)
{
    carryBytes_.append(bytes, count);
    size_t whole = WholeCharacters(carryBytes_.data(), carryBytes_.size(), codePage_, pageInfo_);
    std::wstring text(whole, L'\0');
    int units = whole ? MultiByteToWideChar(codePage_, 0, carryBytes_.data(), int(whole), text.data(), int(whole)) : 0;
    text.resize(size_t(units > 0 ? units : 0));
    carryBytes_.erase(0, whole);
    return text;
}

std::wstring VtTranslator::Translate(const char* bytes, size_t count)
{
    std::wstring text = carryText_ + Decode(bytes, count);
    carryText_.clear();
    std::wstring out;
    out.reserve(text.size());
    size_t i = 0;
    while (i < text.size()) {
        wchar_t unit = text[i];
        if (unit == kEsc) {
            size_t start = i;
            if (Sequence(text, i, out)) continue;
            if (text.size() - start < kLongestSequence) {
                carryText_ = text.substr(start);
                break;
            }
            i = start + 1;
            continue;
        }
        ++i;
        // A zero would end the text early; a bell has no picture.
        if (unit == 0 || unit == 7) continue;
        out += unit;
        Follow(unit);
    }
    return out;
}

void VtTranslator::Follow(wchar_t unit)
{
    switch (unit) {
    case L'\r': x_ = 0; return;
    case L'\n': y_ = y_ + 1 < height_ ? y_ + 1 : y_; return;
    case 8: x_ = x_ > 0 ? x_ - 1 : 0; return;
    case L'\t': x_ = (x_ / 8 + 1) * 8; return;
    default: break;
    }
    if (unit < 32 || (unit >= 0xDC00 && unit <= 0xDFFF)) return;
    started_ = true;
    if (x_ >= width_) {
        x_ = 0;
        y_ = y_ + 1 < height_ ? y_ + 1 : y_;
    }
    ++x_;
}

bool VtTranslator::Sequence(const std::wstring& text, size_t& i, std::wstring& out)
{
    if (i + 1 >= text.size()) return false;
    wchar_t kind = text[i + 1];
    if (kind == L'[') {
        size_t j = i + 2;
        while (j < text.size() && text[j] >= 0x20 && text[j] <= 0x3F) ++j;
        if (j >= text.size()) return false;
        ControlSequence(text.substr(i + 2, j - i - 2), text[j], out);
        i = j + 1;
        return true;
    }
    if (kind == L']') {
        // A title or another string: to BEL or to ESC backslash.
        for (size_t j = i + 2; j < text.size(); ++j) {
            if (text[j] == 7) {
                i = j + 1;
                return true;
            }
            if (text[j] == kEsc && j + 1 < text.size() && text[j + 1] == L'\\') {
                i = j + 2;
                return true;
            }
        }
        return false;
    }
    bool charset = kind == L'(' || kind == L')' || kind == L'*' || kind == L'+';
    if (charset && i + 2 >= text.size()) return false;
    i += charset ? 3 : 2;
    return true;
}

void VtTranslator::ControlSequence(const std::wstring& body, wchar_t final, std::wstring& out)
{
    // Private modes and sequences with intermediates have no counterpart.
    if (body.find_first_not_of(L"0123456789;") != std::wstring::npos) return;
    std::vector<int> n = Numbers(body);
    int first = n[0];
    int count = first > 0 ? first : 1;
    switch (final) {
    case L'm': Colours(body, out); return;
    case L'A': y_ = y_ - count > 0 ? y_ - count : 0; Emit(out, count, final); return;
    case L'B': y_ = y_ + count < height_ ? y_ + count : height_ - 1; Emit(out, count, final); return;
    case L'C': x_ += count; Emit(out, count, final); return;
    case L'D': x_ = x_ - count > 0 ? x_ - count : 0; Emit(out, count, final); return;
    case L'G': MoveTo(count - 1, y_, out); return;
    case L'H':
    case L'f': {
        int column = n.size() > 1 && n[1] > 0 ? n[1] : 1;
        // The pseudo console homes its fresh screen first: the program starts
        // where the shell's cursor is.
        if (!started_) {
            x_ = column - 1;
            y_ = count - 1;
            return;
        }
        MoveTo(column - 1, count - 1, out);
        return;
    }
    case L'K':
        if (first == 0) Emit(out, 1, L'K');
        return;
    case L'J':
        if (started_ && first == 2) out += L"\x1b[2J";
        return;
    case L'X':
        out.append(size_t(count), L' ');
        Emit(out, count, L'D');
        return;
    case L's':
    case L'u': Emit(out, 1, final); return;
    default: return;
    }
}

void VtTranslator::MoveTo(int column, int row, std::wstring& out)
{
    if (row < y_) Emit(out, y_ - row, L'A');
    else if (row > y_) Emit(out, row - y_, L'B');
    out += L'\r';
    if (column > 0) Emit(out, column, L'C');
    x_ = column;
    y_ = row;
}

void VtTranslator::Colours(const std::wstring& body, std::wstring& out)
{
    std::vector<int> n = Numbers(body);
    std::wstring codes;
    auto add = [&codes](const std::wstring& code) {
        if (!codes.empty()) codes += L';';
        codes += code;
    };
    for (size_t k = 0; k < n.size(); ++k) {
        int v = n[k];
        if (v == 0) add(L"0;57;60"); // the shell's own text and background colours
        else if (v == 1) add(L"1");
        else if (v == 22) add(L"0");
        else if ((v >= 30 && v <= 37) || (v >= 40 && v <= 47)) add(std::to_wstring(v));
        else if (v >= 90 && v <= 97) add(L"1;" + std::to_wstring(v - 60) + L";0");
        else if (v >= 100 && v <= 107) add(std::to_wstring(v - 60));
        else if (v == 39) add(L"57");
        else if (v == 49) add(L"60");
        else if ((v == 38 || v == 48) && k + 1 < n.size()) k += n[k + 1] == 5 ? 2 : n[k + 1] == 2 ? 4 : 1;
    }
    if (codes.empty()) return;
    out += L"\x1b[";
    out += codes;
    out += L'm';
}
