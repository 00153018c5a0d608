#include "lang/batch_program.h"

#include "app/errors.h"
#include "app/globals.h"
#include "app/host.h"
#include "app/toolkit/omdib.h"
#include "app/run_line.h"
#include "lang/command_args.h"
#include "lang/expand.h"
#include "lang/group_join.h"
#include "lang/shell_command.h"
#include "lang/splitter.h"
#include "lang/text_stream.h"
#include "lang/trace.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <memory>

namespace {

constexpr int kLongestLine = kLineMax - 1;

bool StartsWithWordI(const std::wstring& text, const wchar_t* word)
{
    size_t n = size_t(lstrlenW(word));
    if (text.size() < n) return false;
    for (size_t i = 0; i < n; ++i)
        if (ToLowerUnit(text[i]) != word[i]) return false;
    return text.size() == n || IsWhite(text[n]);
}

// The word that starts at position from, up to white space.
std::wstring WordAt(const std::wstring& text, size_t from)
{
    const wchar_t* start = SkipWhiteW(text.c_str() + std::min(from, text.size()));
    return std::wstring(start, SkipAlphaW(start));
}

} // namespace

BatchProgram::BatchProgram(const wchar_t* path) : Path(path)
{
    ownParameters_.assign(kMaxParameters, std::wstring());
    ownParameters_[0] = CommandArgs.RawCommand;
    for (int i = 0; i < CommandArgs.ArgCount && i + 1 < kMaxParameters; ++i)
        ownParameters_[size_t(i + 1)] = CommandArgs.RawArgs[i];
    parameterCount_ = CommandArgs.ArgCount;
    parameterTail_ = CommandArgs.Tail;
    Loaded = Load(path);
}

bool BatchProgram::Load(const wchar_t* path)
{
    TextStream stream;
    stream.ReportErrors = 1;
    if (!stream.Open(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING)) return false;
    if (stream.SniffEncoding() == NotText) return false;
    // A physical line longer than the longest allowed is still read whole
    // enough to be recognised as too long.
    stream.LineCapacity = kLineMax;
    std::vector<std::wstring> raw;
    while (const wchar_t* line = stream.ReadLine()) raw.emplace_back(line);
    return Analyse(raw);
}

// Joins the lines of open groups, and finds labels and procedures, once.
bool BatchProgram::Analyse(std::vector<std::wstring>& raw)
{
    Lines.assign(raw.size(), BatchLine());
    for (size_t i = 0; i < raw.size(); ++i) Lines[i].Raw = raw[i];
    auto joiner = std::make_unique<GroupJoiner>();
    for (size_t i = 0; i < raw.size(); ++i) {
        if (IsBlankLine(raw[i].c_str())) continue;
        size_t first = i;
        joiner->Clear();
        for (;;) {
            GroupJoiner::Result joined = int(raw[i].size()) > kLongestLine ? GroupJoiner::Result::TooLong
                                                                          : joiner->Add(raw[i].c_str());
            if (joined == GroupJoiner::Result::TooLong) {
                ReportId(59);
                return false;
            }
            if (joined == GroupJoiner::Result::Complete) break;
            do ++i;
            while (i < raw.size() && IsBlankLine(raw[i].c_str()));
            if (i >= raw.size()) {
                ReportId(38);
                return false;
            }
        }
        BatchLine& line = Lines[first];
        line.Joined = joiner->Text();
        line.Runs = true;
        const std::wstring& text = line.Joined;
        if (text.size() > 1 && text[0] == L':' && !IsWhite(text[1])) line.Label = WordAt(text, 1);
        if (StartsWithWordI(text, L"proc")) line.Procedure = WordAt(text, 4);
        if (StartsWithWordI(text, L"endproc")) line.EndOfProcedure = true;
    }
    return true;
}

const wchar_t* BatchProgram::Parameter(int n) const
{
    if (n < 0 || n >= int(parameters_->size())) return nullptr;
    const std::wstring& slot = (*parameters_)[size_t(n)];
    return slot.empty() ? nullptr : slot.c_str();
}

BatchProgram::Frame BatchProgram::SwapParameters(Frame frame)
{
    Frame previous{parameters_, parameterCount_, parameterTail_};
    parameters_ = frame.Slots;
    parameterCount_ = frame.Count;
    parameterTail_ = frame.Tail;
    return previous;
}

void BatchProgram::Shift(int n)
{
    std::vector<std::wstring>& slots = *parameters_;
    if (n < 0 || n >= int(slots.size())) return;
    slots.erase(slots.begin() + n);
    slots.emplace_back();
}

const std::wstring* BatchProgram::FetchLine()
{
    int start = NextLine;
    while (NextLine < int(Lines.size()) && !Lines[size_t(NextLine)].Runs) ++NextLine;
    if (NextLine >= int(Lines.size())) return nullptr;
    // A procedure's body runs only through callproc: in sequence it is skipped.
    if (!Lines[size_t(NextLine)].Procedure.empty()) {
        int end = NextLine + 1;
        while (end < int(Lines.size()) && !(Lines[size_t(end)].Runs && Lines[size_t(end)].EndOfProcedure)) ++end;
        if (end >= int(Lines.size())) {
            NextLine = start;
            ReportId(85);
            return nullptr;
        }
        NextLine = end + 1;
        return FetchLine();
    }
    return &Lines[size_t(NextLine++)].Joined;
}

void BatchProgram::RunLine(const std::wstring& text)
{
    TheScreen.PollBreak();
    bool silent = !text.empty() && text[0] == L'@';
    auto expanded = std::make_unique<wchar_t[]>(kLineMax);
    ExpandBatchLine(*this, text.c_str() + (silent ? 1 : 0), expanded.get(), kLineMax);
    Jumped = 0;
    // Every caller has just fetched the line, so it stands before NextLine.
    // Its statements are shown to the trace with the line as read, not as
    // joined with the rest of its group.
    const std::wstring& raw = Lines[size_t(NextLine - 1)].Raw;
    TraceHighlightLine(NextLine - 1);
    if (!silent && TheShell.EchoOn) EchoBatchLine(expanded.get());
    auto splitter = std::make_unique<StatementSplitter>();
    if (!splitter->Start(expanded.get())) return;
    while (TheShell.Terminate != 2 && splitter->Next(false)) TheShell.ExecuteStatement(this, raw.c_str());
}

void BatchProgram::Run()
{
    Finished = 0;
    if (!Loaded || Lines.empty()) return;
    while (!Finished) {
        const std::wstring* text = FetchLine();
        if (!text) break;
        int line = NextLine; // the fetched line's 1-based number
        RunLine(*text);
        if (CheckBreak(line)) break;
        if (NextLine >= int(Lines.size())) Finished = 1;
    }
}

bool BatchProgram::Goto(const wchar_t* label)
{
    Jumped = 1;
    for (size_t i = 0; i < Lines.size(); ++i)
        if (!Lines[i].Label.empty() && lstrcmpiW(Lines[i].Label.c_str(), label) == 0) {
            NextLine = int(i);
            return true;
        }
    MarkFinished();
    ReportId(31);
    return false;
}

bool CheckBreak(int line)
{
    ShellCommand& shell = TheShell;
    if (shell.Terminate == 2) return true;
    if (shell.Terminate != 1 && !TheScreen.BreakFlag) return false;
    shell.Terminate = 1;
    TheScreen.BreakFlag = 0;
    // Nobody could see the question while output goes to a file.
    if (TheScreen.Redirected) {
        shell.Terminate = 2;
        return true;
    }
    TraceUserWait wait(true);
    if (TheScreen.CursorX != 0) TheScreen.LineFeed();
    uint16_t colour = TheScreen.Attr;
    UseItem(Item::Text);
    if (line < 1) {
        TheScreen.WriteCells(L"Terminate Batch (Y/N)? ");
    } else {
        TheScreen.WriteCells(L"Terminate Batch at line ");
        UseItem(Item::Number);
        wchar_t number[16];
        i64tow_ex(line, number, 10);
        TheScreen.WriteCells(number);
        UseItem(Item::Text);
        TheScreen.WriteCells(L" (Y/N)? ");
    }
    TheScreen.Attr = colour;
    for (;;) {
        wchar_t key = Host->ReadKey();
        if (key == 3 || key == L'y' || key == L'Y') {
            wchar_t letter[2] = {key, 0};
            if (key != 3) TheScreen.WriteCells(letter);
            TheScreen.LineFeed();
            shell.Terminate = 2;
            return true;
        }
        if (key == L'n' || key == L'N') {
            wchar_t letter[2] = {key, 0};
            TheScreen.WriteCells(letter);
            TheScreen.LineFeed();
            shell.Terminate = 0;
            return false;
        }
    }
}
