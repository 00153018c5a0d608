#include "lang/for_loop.h"

#include "app/errors.h"
#include "lang/expand_output.h"
#include "lang/expr.h"
#include "lang/shell_command.h"
#include "lang/tilde.h"
#include "lang/variables.h"

#include <cerrno>
#include <cwchar>

namespace {

// A keyword in any case, standing as a word of its own. p moves behind it.
bool TakeKeyword(wchar_t*& p, const wchar_t* word)
{
    wchar_t* q = SkipWhiteW(p);
    size_t n = std::wcslen(word);
    for (size_t i = 0; i < n; ++i)
        if (ToLowerUnit(q[i]) != word[i]) return false;
    if (q[n] && !IsWhite(q[n])) return false;
    p = SkipWhiteW(q + n);
    return true;
}

// A switch of its own, "/" and a letter in any case, with a blank behind.
bool TakeSwitch(wchar_t*& p, wchar_t letter)
{
    if (p[0] != L'/' || ToLowerUnit(p[1]) != letter || !IsWhite(p[2])) return false;
    p = SkipWhiteW(p + 3);
    return true;
}

// A quoted string or a word, cut off the text; the quotes go.
wchar_t* TakeWordOrString(wchar_t*& p)
{
    wchar_t* word = p;
    p = *p == L'"' ? SkipStrW(p + 1) : SkipAlphaW(p);
    if (*p) *p++ = 0;
    p = SkipWhiteW(p);
    return *word == L'"' ? ConvertStrW(word) : word;
}

// number: one word read as a real. Only a number out of range fails; a word
// that is no number reads as 0.
bool TakeReal(wchar_t*& p, double& value)
{
    p = SkipWhiteW(p);
    errno = 0;
    wchar_t* end = nullptr;
    value = std::wcstod(p, &end);
    if (end == p) value = 0;
    if (errno == ERANGE) return false;
    p = SkipWhiteW(SkipAlphaW(p));
    return true;
}

bool IsTildeModifier(wchar_t c) { return c && std::wcschr(L"fdpnxsatz", c) != nullptr; }

// The loop letters of one turn and the texts they stand for.
class LoopValues : public TildeSelector {
public:
    LoopValues(const wchar_t* letters, const std::wstring* values, int count)
        : letters_(letters), values_(values), count_(count)
    {
    }
    bool IsSelector(wchar_t c) const override { return Find(c) >= 0; }
    const wchar_t* Value(wchar_t c) const override
    {
        int i = Find(c);
        return i >= 0 ? values_[i].c_str() : nullptr;
    }

private:
    int Find(wchar_t c) const
    {
        for (int i = 0; i < count_; ++i)
            if (letters_[i] == c && c) return i;
        return -1;
    }
    const wchar_t* letters_;
    const std::wstring* values_;
    int count_;
};

// Stands for one loop value behind a unit that no modifier can be, so that a
// loop letter which is also a modifier letter (%~nx with the letter x) is
// read the way it was meant.
class SingleValue : public TildeSelector {
public:
    static constexpr wchar_t kMark = 1;
    explicit SingleValue(const wchar_t* value) : value_(value) {}
    bool IsSelector(wchar_t c) const override { return c == kMark; }
    const wchar_t* Value(wchar_t) const override { return value_; }

private:
    const wchar_t* value_;
};

// p stands behind "%~": modifiers and a loop letter, the letter being the
// last unit of the modifier run that is one. Returns the position behind
// the form, or null when no loop letter ends it.
const wchar_t* PutTildeForm(const wchar_t* p, const LoopValues& values, ExpandOutput& out)
{
    const wchar_t* letter = nullptr;
    for (const wchar_t* q = p;; ++q) {
        if (values.IsSelector(*q)) letter = q;
        if (*q == L'$') {
            const wchar_t* colon = q + 1;
            while (*colon && *colon != L':' && !IsWhite(*colon)) ++colon;
            if (*colon != L':') break;
            q = colon;
        } else if (!IsTildeModifier(*q)) {
            break;
        }
    }
    if (!letter) return nullptr;
    std::wstring form(p, letter);
    form += SingleValue::kMark;
    ExpandTildeForm(form.c_str(), SingleValue(values.Value(*letter)), out);
    return letter + 1;
}

// body := { "%" letter | "%~" modifiers letter | "%" unit | unit }
void PutBody(const wchar_t* body, const LoopValues& values, ExpandOutput& out)
{
    for (const wchar_t* p = body; *p;) {
        const wchar_t* percent = std::wcschr(p, L'%');
        if (!percent) {
            out.Put(p);
            return;
        }
        out.Put(p, percent);
        p = percent;
        if (const wchar_t* value = values.Value(p[1])) {
            out.Put(value);
            p += 2;
            continue;
        }
        if (p[1] == L'~') {
            if (const wchar_t* behind = PutTildeForm(p + 2, values, out)) {
                p = behind;
                continue;
            }
        }
        // Anything else is copied with the unit behind it, which is thereby
        // never taken as the start of a form itself.
        out.Put(*p++);
        if (*p) out.Put(*p++);
    }
}

} // namespace

ForLoop::~ForLoop()
{
    Close();
    RestoreDirectory();
    for (const std::wstring& name : temporaries_) DeleteFileW(name.c_str());
}

int ForLoop::Parse(const wchar_t* tail)
{
    CopyCutW(text_, tail, kLineMax);
    wchar_t* p = SkipWhiteW(text_);
    ParseSwitches(p);
    if (*p == L'/') {
        ReportId(2);
        return 0;
    }
    if (fileMode_ && !ParseOptions(options_.c_str())) {
        ReportId(96);
        return 0;
    }
    wchar_t* word = p;
    p = SkipAlphaW(p);
    if (*p) *p++ = 0;
    if (word[0] == L'%' && std::wcslen(word) != 2) {
        ReportId(95);
        return 0;
    }
    variable_ = word;
    bool parsed;
    if (TakeKeyword(p, L"in")) {
        parsed = ParseList(p);
    } else if (TakeKeyword(p, L"is")) {
        parsed = ParseNumbers(p);
    } else {
        ReportId(97);
        return 0;
    }
    if (!parsed) return 0;
    if (fileMode_ && variable_[0] == L'%') AssignLetters(variable_[1]);
    if (!recursive_) {
        Restart();
        return 1;
    }
    CollectDirectories();
    return 2;
}

// { "/d " | "/r " [root] | "/f " ["options"] }
void ForLoop::ParseSwitches(wchar_t*& p)
{
    for (;;) {
        if (TakeSwitch(p, L'd')) {
            directoriesOnly_ = 1;
        } else if (TakeSwitch(p, L'r')) {
            recursive_ = 1;
            root_ = (*p == L'%' || *p == L'/' || !*p) ? L"." : TakeWordOrString(p);
        } else if (TakeSwitch(p, L'f')) {
            fileMode_ = 1;
            if (*p == L'"') options_ = TakeWordOrString(p);
        } else {
            return;
        }
    }
}

// "(" list ")" "do" body
bool ForLoop::ParseList(wchar_t* p)
{
    if (*p != L'(') {
        ReportId(98);
        return false;
    }
    wchar_t* end = SkipGroupW(p);
    if (!*SkipWhiteW(end)) {
        ReportId(99);
        return false;
    }
    end[-1] = 0;
    listStart_ = p + 1;
    listCopy_ = listStart_;
    return ParseBody(end);
}

// start "to" finish [ "step" step ] "do" body
bool ForLoop::ParseNumbers(wchar_t* p)
{
    if (!TakeReal(p, first_)) {
        ReportId(102);
        return false;
    }
    if (!TakeKeyword(p, L"to")) {
        ReportId(101);
        return false;
    }
    if (!TakeReal(p, finish_)) {
        ReportId(103);
        return false;
    }
    step_ = 1;
    if (TakeKeyword(p, L"step") && !TakeReal(p, step_)) {
        ReportId(104);
        return false;
    }
    numeric_ = 1;
    return ParseBody(p);
}

bool ForLoop::ParseBody(wchar_t* p)
{
    if (!TakeKeyword(p, L"do")) {
        ReportId(100);
        return false;
    }
    if (!*p) {
        ReportId(32);
        return false;
    }
    body_ = p;
    return true;
}

void ForLoop::Restart()
{
    Close();
    opening_ = false;
    found_.clear();
    foundIndex_ = 0;
    current_ = first_;
    if (numeric_) return;
    // Taking items cuts the list; it is put back whole for each directory.
    std::wmemcpy(listStart_, listCopy_.c_str(), listCopy_.size() + 1);
    list_ = listStart_;
}

// item := text up to the next comma, blanks around it removed. Quotes do not
// hide a comma.
wchar_t* ForLoop::TakeItem()
{
    if (!list_) return nullptr;
    wchar_t* item = SkipWhiteW(list_);
    wchar_t* comma = std::wcschr(item, L',');
    if (comma) {
        *comma = 0;
        list_ = comma + 1;
    } else {
        list_ = nullptr;
    }
    size_t n = std::wcslen(item);
    while (n > 0 && IsWhite(item[n - 1])) item[--n] = 0;
    return item;
}

wchar_t* ForLoop::NextItem()
{
    if (failed_) return nullptr;
    if (numeric_) return NextNumber();
    for (;;) {
        if (IsOpen()) {
            if (wchar_t* statement = NextLine()) return statement;
            Close();
            continue;
        }
        if (foundIndex_ < found_.size()) return Substitute(found_[foundIndex_++].c_str());
        wchar_t* item = TakeItem();
        if (!item) return nullptr;
        if (!*item) continue;
        if (fileMode_) {
            if (OpenSource(item)) continue;
            if (failed_) return nullptr;
            continue;
        }
        if (*item == L'"') item = ConvertStrW(item);
        if (std::wcschr(item, L'*')) {
            SearchPattern(item);
            continue;
        }
        return Substitute(item);
    }
}

wchar_t* ForLoop::NextNumber()
{
    bool more = step_ > 0 ? current_ <= finish_ : step_ < 0 && current_ >= finish_;
    if (!more) return nullptr;
    ExprValue value;
    value.Type = ExprReal;
    value.Real = current_;
    wchar_t number[40];
    FormatExprValue(value, number, 40);
    if (variable_[0] != L'%' && variable_[0]) SetVariable(variable_, number);
    current_ += step_;
    return Substitute(number);
}

// The moment of opening is a turn of its own, with nothing to run.
wchar_t* ForLoop::NextLine()
{
    if (opening_) {
        opening_ = false;
        bodyResult_[0] = 0;
        return bodyResult_;
    }
    const wchar_t* line = NextFields();
    if (!line) return nullptr;
    return SubstituteFields(line);
}

// What a /f item names, by its quotes:
//              "..."      '...'      `...`      other
// plain:       string     command    file       file
// usebackq:    file       string     command    file
bool ForLoop::OpenSource(wchar_t* item)
{
    wchar_t quote = *item;
    bool quoted = quote == L'"' || quote == L'\'' || (quote == L'`' && UseBackQuotes);
    const wchar_t* inner = quoted ? ConvertStrExW(item, quote) : item;
    std::wstring path;
    bool isString = UseBackQuotes ? quote == L'\'' : quote == L'"';
    bool isCommand = UseBackQuotes ? quote == L'`' : quote == L'\'';
    if (isString) path = WriteString(inner);
    else if (isCommand) path = CaptureCommand(inner);
    else path = inner;
    // Past the last temporary file an item counts as empty.
    if (path.empty()) return false;
    if (!OpenData(path.c_str())) {
        failed_ = true;
        return false;
    }
    opening_ = true;
    return true;
}

std::wstring ForLoop::NewTemporary()
{
    if (temporaries_.size() >= size_t(kMaxTemporaries)) return {};
    wchar_t name[kPathMax], full[kPathMax];
    if (!GetTempFileNameW(L".", L"FOR", 0, name)) {
        TheErrors.ReportPlatformError(GetLastError());
        failed_ = true;
        return {};
    }
    // The loop may change directory before the file is deleted.
    DWORD n = GetFullPathNameW(name, kPathMax, full, nullptr);
    temporaries_.emplace_back(n > 0 && n < kPathMax ? full : name);
    return temporaries_.back();
}

std::wstring ForLoop::WriteString(const wchar_t* text)
{
    std::wstring name = NewTemporary();
    if (name.empty()) return name;
    TextStream out;
    out.ReportErrors = 1;
    if (!out.Open(name.c_str(), GENERIC_WRITE, 0, CREATE_ALWAYS)) {
        failed_ = true;
        return {};
    }
    out.Encoding = Utf16LE;
    if (!out.WriteMark() || !out.Write(text)) failed_ = true;
    return failed_ ? std::wstring() : name;
}

std::wstring ForLoop::CaptureCommand(const wchar_t* command)
{
    std::wstring name = NewTemporary();
    if (name.empty()) return name;
    // Right behind the command, so that no blank of ours ends its output.
    std::wstring line = std::wstring(command) + L">\"" + name + L"\"";
    TheShell.RunCommandLine(line.c_str());
    return name;
}

wchar_t* ForLoop::Substitute(const wchar_t* value)
{
    if (variable_[0] != L'%') {
        CopyCutW(bodyResult_, body_, kLineMax);
        return bodyResult_;
    }
    values_.resize(1);
    values_[0] = value;
    ExpandOutput out(bodyResult_, kLineMax);
    PutBody(body_, LoopValues(variable_ + 1, values_.data(), 1), out);
    return bodyResult_;
}

wchar_t* ForLoop::SubstituteFields(const wchar_t* line)
{
    if (variable_[0] != L'%') {
        CopyCutW(bodyResult_, body_, kLineMax);
        return bodyResult_;
    }
    values_.resize(size_t(TokenCount));
    letters_.resize(size_t(TokenCount));
    for (int i = 0; i < TokenCount; ++i) {
        const ForToken& token = Tokens[i];
        letters_[size_t(i)] = token.Letter;
        values_[size_t(i)].assign(line + token.Offset, size_t(token.Length));
    }
    ExpandOutput out(bodyResult_, kLineMax);
    PutBody(body_, LoopValues(letters_.data(), values_.data(), TokenCount), out);
    return bodyResult_;
}

bool ForLoop::NextDirectory()
{
    while (directoryIndex_ < directories_.size()) {
        const std::wstring& directory = directories_[directoryIndex_++];
        // A directory that cannot be entered ends the walk where it stands.
        if (!SetCurrentDirectoryW(directory.c_str())) break;
        Restart();
        return true;
    }
    RestoreDirectory();
    return false;
}

void ForLoop::RestoreDirectory()
{
    if (!directorySaved_) return;
    SetCurrentDirectoryW(savedDirectory_);
    directorySaved_ = false;
}
