// CompleteTab and the cycle of later TABs: finding the token at the end of
// the line, choosing the text, typing it with the quotes it needs, and
// listing the candidates under the line.
#include "input/completion.h"

#include "app/globals.h"
#include "app/host.h"
#include "app/sound_events.h"
#include "input/editor.h"
#include "input/prompt.h"
#include "input/unix_mode.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace {

constexpr const wchar_t* kTabSound = L"File expansion TAB key";

CandidateList candidates;
int cycleIndex = 0;
// Index in the line where the token (or its opening quote) stands.
int tokenStart = 0;
// Units the last completion typed at the end of the line.
int lastTyped = 0;

wchar_t* Line() { return TheEditor.Line; }
int LineLength() { return lstrlenW(TheEditor.Line); }
bool CtrlHeld() { return GetKeyState(VK_CONTROL) < 0; }

bool NeedsQuotes(wchar_t unit)
{
    return unit && (std::wcschr(L" \t(){}&<>|^", unit) || unit == CharSplit);
}

bool HasWildcard(const wchar_t* text) { return std::wcspbrk(text, L"*?") != nullptr; }

bool IsDirectory(const TabCandidate& candidate)
{
    return candidate.Attributes != kCommandMark && (candidate.Attributes & FILE_ATTRIBUTE_DIRECTORY);
}

void MapCase(std::wstring& text)
{
    if (!TheTabSettings.MapTabs || text.empty()) return;
    if (GetKeyState(VK_CAPITAL) & 1) CharUpperBuffW(text.data(), DWORD(text.size()));
    else CharLowerBuffW(text.data(), DWORD(text.size()));
}

void ToEnd()
{
    TheEditor.Caret = LineLength();
    TheEditor.RedrawLine();
}

// Takes units off the end of the line, blanking them on the screen first.
void RemoveFromEnd(int units)
{
    int length = LineLength();
    int keep = std::max(0, length - units);
    for (int i = keep; i < length; ++i) Line()[i] = L' ';
    TheEditor.Caret = keep;
    TheEditor.RedrawLine();
    std::memset(Line() + keep, 0, size_t(length - keep) * sizeof(wchar_t));
}

void Type(const std::wstring& text)
{
    TheEditor.TypeLine(text.c_str(), false);
    lastTyped += int(text.size());
}

// Shows the token from tokenStart on in the form Unix mode displays paths.
void ShowTokenUnixForm(int start)
{
    if (!TheUnixMode.Unix) return;
    std::wstring shown = UnixDisplayW(Line() + start);
    CopyCutW(Line() + start, shown.c_str(), kLineMax - start);
    ToEnd();
}

// Behind the name: a backslash for a directory, else the closing quote when
// one is needed and a blank; then the opening quote put right.
void FinishName(const TabCandidate& candidate, bool whole)
{
    bool needsQuote = false;
    for (const wchar_t* p = Line() + tokenStart; *p && !needsQuote; ++p) needsQuote = NeedsQuotes(*p);
    if (whole) {
        if (IsDirectory(candidate)) Type(TheUnixMode.Unix ? L"/" : L"\\");
        else Type(needsQuote ? L"\" " : L" ");
    }
    bool quoted = Line()[tokenStart] == L'"';
    if (quoted == needsQuote) return;
    int insertMode = TheEditor.InsertMode;
    TheEditor.InsertMode = 1;
    TheEditor.Caret = tokenStart;
    if (quoted) TheEditor.EditorKey(VK_DELETE);
    else TheEditor.EditorChar(L'"');
    TheEditor.InsertMode = insertMode;
    ToEnd();
}

// The text that all candidates share from the typed part on; whole when it
// is one candidate's complete name.
std::wstring CommonPrefix(int typedLength, bool& whole)
{
    whole = true;
    std::wstring_view first = candidates[0].Name;
    if (candidates.size() == 1) return std::wstring(first);
    auto unitAt = [](std::wstring_view name, int position) {
        return position < int(name.size()) ? ToUpperUnit(name[size_t(position)]) : wchar_t(0);
    };
    for (int position = typedLength; position < candidates.Longest; ++position) {
        wchar_t unit = unitAt(first, position);
        for (size_t i = 0; i < candidates.size(); ++i) {
            std::wstring_view other = candidates[i].Name;
            if (unitAt(other, position) == unit) continue;
            whole = false;
            return std::wstring(other.substr(0, size_t(position)));
        }
    }
    return std::wstring(first);
}

void ListCandidates()
{
    int cellWidth = std::min(candidates.Longest + 3, ScreenWidth - 1);
    int columns = std::max(1, ScreenWidth / std::max(1, cellWidth));
    int rows = std::max(1, (int(candidates.size()) - 1) / columns + 1);

    ToEnd();
    Host->HideCaret();
    TheScreen.Paging = TheScreen.PageEnabled;
    TheScreen.PageLines = 0;
    TheScreen.BreakFlag = 0;
    TheScreen.NewLine();
    for (int row = 0; row < rows && !TheScreen.BreakFlag; ++row) {
        for (int column = 0; column < columns; ++column) {
            size_t i = size_t(row + column * rows);
            std::wstring cell;
            if (i < candidates.size()) {
                TabCandidate item = candidates[i];
                cell = item.Name;
                if (IsDirectory(item)) cell = L"[" + cell + L"]";
                UseItem(IsDirectory(item) ? Item::Number
                        : item.Attributes == kCommandMark ? Item::Text : Item::FileName);
            }
            if (int(cell.size()) < cellWidth) cell.append(size_t(cellWidth) - cell.size(), L' ');
            MapCase(cell);
            TheScreen.Write(cell.c_str());
        }
        TheScreen.NewLine();
    }
    TheScreen.NewLine();
    TheScreen.Paging = 0;
    Host->Refresh();

    TheScreen.PollEnabled = 0;
    ThePrompt.Print();
    TheScreen.PollEnabled = 1;
    TheScreen.EditX = TheScreen.CursorX;
    TheScreen.EditY = TheScreen.CursorY;
    ToEnd();
    Host->ShowCaret();
}

void NextCandidate()
{
    if (CtrlHeld()) {
        ListCandidates();
        PlaySoundEvent(kTabSound);
        TheEditor.Cycling = 1;
        return;
    }
    TheEditor.Caret = LineLength();
    RemoveFromEnd(lastTyped);
    lastTyped = 0;
    if (++cycleIndex >= int(candidates.size())) cycleIndex = 0;
    TabCandidate candidate = candidates[size_t(cycleIndex)];
    std::wstring name(candidate.Name);
    MapCase(name);
    Type(name);
    FinishName(candidate, true);
    PlaySoundEvent(kTabSound);
    TheEditor.Cycling = 1;
}

// The token's first index: behind the last quote when the quotes are odd,
// else behind the last blank with any leading <, > and | skipped.
int FindToken()
{
    int length = LineLength();
    int quotes = 0, lastQuote = -1, lastBlank = -1;
    for (int i = 0; i < length; ++i) {
        if (Line()[i] == L'"') {
            ++quotes;
            lastQuote = i;
        } else if (Line()[i] == L' ') {
            lastBlank = i;
        }
    }
    if (quotes % 2) {
        tokenStart = lastQuote;
        return lastQuote + 1;
    }
    int start = lastBlank + 1;
    while (Line()[start] == L'<' || Line()[start] == L'>' || Line()[start] == L'|') ++start;
    tokenStart = start;
    return start;
}

bool EndsWith(const std::wstring& text, const wchar_t* tail)
{
    size_t n = std::wcslen(tail);
    return text.size() >= n && text.compare(text.size() - n, n, tail) == 0;
}

// Tokens that name a place rather than begin a name.
bool NotCompleted(const std::wstring& token)
{
    return token == L"." || token == L".." || EndsWith(token, L":") || EndsWith(token, L"\\") ||
           EndsWith(token, L"\\.") || EndsWith(token, L"\\..");
}

} // namespace

void CompleteTab()
{
    if (!TheTabSettings.ShortTabs && TheEditor.Cycling) {
        NextCandidate();
        return;
    }
    int start = FindToken();
    bool commandPosition = true;
    for (int i = 0; i < tokenStart; ++i) commandPosition = commandPosition && Line()[i] == L' ';
    if (!Line()[start]) return;
    for (wchar_t* p = Line() + start; *p; ++p)
        if (*p == L'/') *p = L'\\';
    std::wstring token = Line() + start;
    if (NotCompleted(token)) {
        ShowTokenUnixForm(start);
        return;
    }

    size_t slash = token.rfind(L'\\');
    size_t cut = slash != std::wstring::npos ? slash : token.rfind(L':');
    std::wstring typed = cut == std::wstring::npos ? token : token.substr(cut + 1);
    std::wstring namePattern = slash == std::wstring::npos ? token : token.substr(slash + 1);
    int typedLength = int(typed.size());

    std::wstring pattern = token;
    pattern.erase(std::remove(pattern.begin(), pattern.end(), L'"'), pattern.end());
    candidates.Clear();
    candidates.AddFiles((pattern + L"*").c_str(), TheTabSettings.IncHidden ? 0x37 : 0x31);
    if (commandPosition && slash == std::wstring::npos && !HasWildcard(namePattern.c_str()))
        candidates.AddCommands(namePattern.c_str(), tokenStart == 0);
    candidates.Sort();
    ShowTokenUnixForm(start);

    if (TheTabSettings.ShortTabs && HasWildcard(namePattern.c_str()) && candidates.size() != 1) {
        if (candidates.empty()) return;
        PlaySoundEvent(kTabSound);
        if (TheTabSettings.AutoDir) ListCandidates();
        return;
    }
    if (candidates.empty()) return;
    if (CtrlHeld()) {
        ListCandidates();
        PlaySoundEvent(kTabSound);
        TheEditor.Cycling = 0;
        return;
    }

    bool whole = true;
    std::wstring text = TheTabSettings.ShortTabs ? CommonPrefix(typedLength, whole) : std::wstring(candidates[0].Name);
    MapCase(text);
    TheEditor.Caret = LineLength();
    RemoveFromEnd(typedLength);
    lastTyped = 0;
    Type(text);
    FinishName(candidates[0], !TheTabSettings.ShortTabs || whole);
    if (candidates.size() < 2) return;
    PlaySoundEvent(kTabSound);
    cycleIndex = 0;
    TheEditor.Cycling = 1;
    if (TheTabSettings.ShortTabs && TheTabSettings.AutoDir) ListCandidates();
}
