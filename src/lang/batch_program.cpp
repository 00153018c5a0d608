#include "lang/batch_program.h"

#include "app/errors.h"
#include "app/globals.h"
#include "app/host.h"
#include "app/toolkit/omdib.h"
#include "app/run_line.h"
#include "app/toolkit/handles.h"
#include "lang/command_args.h"
#include "lang/expand.h"
#include "lang/group_join.h"
#include "lang/shell_command.h"
#include "lang/splitter.h"
#include "lang/text_stream.h"
#include "lang/trace.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <algorithm>
#include <memory>

namespace {

constexpr int kLongestLine = kLineMax - 1;

bool StartsWithWordI(const wchar_t* text, const wchar_t* word)
{
    for (; *word; ++text, ++word)
        if (ToLowerUnit(*text) != *word) return false;
    return *text == 0 || IsWhite(*text);
}

// The word that starts at text, after white space.
std::wstring WordAt(const wchar_t* text)
{
    const wchar_t* start = SkipWhiteW(text);
    return std::wstring(start, SkipAlphaW(start));
}

// Labels and procedure names are found case-blind.
std::wstring LowerKey(std::wstring name)
{
    if (!name.empty()) CharLowerBuffW(name.data(), DWORD(name.size()));
    return name;
}

bool IsProcedureStart(const wchar_t* text) { return StartsWithWordI(text, L"proc") && !WordAt(text + 4).empty(); }

// Upper bounds for the loader's tables from one quick pass over the bytes:
// the lines, and the units of text without their line ends. Reserving them
// keeps the tables from being copied as they grow.
struct LoadEstimate {
    size_t Lines = 1;
    size_t Units = 1;
};

LoadEstimate EstimateLoad(const wchar_t* path, int32_t encoding)
{
    LoadEstimate estimate;
    UniqueFile file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) return estimate;
    bool wide = encoding == Utf16LE || encoding == Utf16BE;
    size_t low = encoding == Utf16BE ? 1 : 0; // the byte of a unit that holds CR or LF
    std::vector<unsigned char> chunk(size_t(1) << 16);
    uint64_t bytes = 0, ends = 0, returns = 0;
    DWORD got = 0;
    while (ReadFile(file.get(), chunk.data(), DWORD(chunk.size()), &got, nullptr) && got > 0) {
        if (!wide) {
            ends += uint64_t(std::count(chunk.begin(), chunk.begin() + got, '\n'));
            returns += uint64_t(std::count(chunk.begin(), chunk.begin() + got, '\r'));
        } else {
            for (DWORD i = 0; i < got; ++i) {
                unsigned char b = chunk[i];
                if ((bytes + i) % 2 != low) continue;
                if (b == '\n') ++ends;
                else if (b == '\r') ++returns;
            }
        }
        bytes += got;
    }
    uint64_t units = wide ? bytes / 2 : bytes;
    estimate.Lines = size_t(ends + 1);
    estimate.Units = size_t(units - std::min(units, ends + returns) + ends + 1);
    return estimate;
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
    LoadEstimate estimate = EstimateLoad(path, stream.Encoding);
    starts_.reserve(estimate.Lines);
    text_.reserve(estimate.Units);
    // A physical line longer than the longest allowed is still read whole
    // enough to be recognised as too long.
    stream.LineCapacity = kLineMax;
    while (const wchar_t* line = stream.ReadLine()) {
        // Line starts are 32 bits: text beyond that is more than memory holds.
        if (text_.size() >= UINT32_MAX - size_t(kLineMax)) {
            ReportId(13);
            return false;
        }
        starts_.push_back(uint32_t(text_.size()));
        text_.append(line);
        text_.push_back(0);
    }
    return Analyse();
}

// Joins the lines of open groups, and finds labels and procedures, once.
bool BatchProgram::Analyse()
{
    int count = LineCount();
    swallowed_.assign(size_t(count), false);
    auto joiner = std::make_unique<GroupJoiner>();
    for (int i = 0; i < count; ++i) {
        if (IsBlankLine(RawLine(i))) continue;
        int first = i;
        joiner->Clear();
        for (;;) {
            GroupJoiner::Result joined =
                RawLength(i) > kLongestLine ? GroupJoiner::Result::TooLong : joiner->Add(RawLine(i));
            if (joined == GroupJoiner::Result::TooLong) {
                ReportId(59);
                return false;
            }
            if (joined == GroupJoiner::Result::Complete) break;
            do ++i;
            while (i < count && IsBlankLine(RawLine(i)));
            if (i >= count) {
                ReportId(38);
                return false;
            }
        }
        if (i > first) joined_.emplace(first, joiner->Text());
        for (int swallowed = first + 1; swallowed <= i; ++swallowed) swallowed_[size_t(swallowed)] = true;
        const wchar_t* text = RunText(first);
        // The first line of a name wins.
        if (text[0] == L':' && text[1] && !IsWhite(text[1])) {
            std::wstring label = WordAt(text + 1);
            if (!label.empty()) labels_.emplace(LowerKey(std::move(label)), first);
        }
        if (IsProcedureStart(text)) procedures_.emplace(LowerKey(WordAt(text + 4)), first);
    }
    return true;
}

int BatchProgram::RawLength(int index) const
{
    size_t end = size_t(index) + 1 < starts_.size() ? starts_[size_t(index) + 1] : text_.size();
    return int(end - starts_[size_t(index)]) - 1; // less the line's end mark
}

const wchar_t* BatchProgram::RunText(int index) const
{
    if (swallowed_[size_t(index)]) return nullptr;
    const wchar_t* raw = RawLine(index);
    if (IsBlankLine(raw)) return nullptr;
    if (joined_.empty()) return raw;
    auto group = joined_.find(index);
    return group == joined_.end() ? raw : group->second.c_str();
}

std::vector<std::wstring> BatchProgram::RawLines() const
{
    std::vector<std::wstring> lines;
    lines.reserve(starts_.size());
    for (int i = 0; i < LineCount(); ++i) lines.emplace_back(RawLine(i));
    return lines;
}

bool BatchProgram::EndsProcedure(int index) const
{
    const wchar_t* text = RunText(index);
    return text && StartsWithWordI(text, L"endproc");
}

int BatchProgram::FindProcedure(const wchar_t* name) const
{
    auto found = procedures_.find(LowerKey(name));
    return found == procedures_.end() ? -1 : found->second;
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

const wchar_t* BatchProgram::FetchLine()
{
    int start = NextLine;
    for (;;) {
        const wchar_t* text = nullptr;
        while (NextLine < LineCount() && !(text = RunText(NextLine))) ++NextLine;
        if (NextLine >= LineCount()) return nullptr;
        if (!IsProcedureStart(text)) {
            ++NextLine;
            return text;
        }
        // A procedure's body runs only through callproc: in sequence it is skipped.
        int end = NextLine + 1;
        while (end < LineCount() && !EndsProcedure(end)) ++end;
        if (end >= LineCount()) {
            NextLine = start;
            ReportId(85);
            return nullptr;
        }
        NextLine = end + 1;
    }
}

void BatchProgram::RunLine(const wchar_t* text)
{
    TheScreen.PollBreak();
    bool silent = text[0] == L'@';
    // One buffer serves every line: the splitter copies the line before any
    // statement runs, so a procedure's lines may use it again.
    if (!expanded_) expanded_ = std::make_unique<wchar_t[]>(kLineMax);
    ExpandBatchLine(*this, text + (silent ? 1 : 0), expanded_.get(), kLineMax);
    Jumped = 0;
    // Every caller has just fetched the line, so it stands before NextLine.
    // Its statements are shown to the trace with the line as read, not as
    // joined with the rest of its group.
    const wchar_t* raw = RawLine(NextLine - 1);
    TraceHighlightLine(NextLine - 1);
    if (!silent && TheShell.EchoOn) EchoBatchLine(expanded_.get());
    SplitterLease splitter;
    if (!splitter->Start(expanded_.get())) return;
    while (TheShell.Terminate != 2 && splitter->Next(false)) TheShell.ExecuteStatement(this, raw);
}

void BatchProgram::Run()
{
    Finished = 0;
    if (!Loaded || starts_.empty()) return;
    while (!Finished) {
        const wchar_t* text = FetchLine();
        if (!text) break;
        int line = NextLine; // the fetched line's 1-based number
        RunLine(text);
        if (CheckBreak(line)) break;
        if (NextLine >= LineCount()) Finished = 1;
    }
}

bool BatchProgram::Goto(const wchar_t* label)
{
    Jumped = 1;
    auto found = labels_.find(LowerKey(label));
    if (found != labels_.end()) {
        NextLine = found->second;
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
