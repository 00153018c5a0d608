// Redirection and pipes of one statement. The scan takes >, >>, < and | out
// of the stage text and attaches files to the output writer and to the
// editor's input for the length of the statement. A pipe is sequential: the
// left stage runs to its end with its output in a temporary file, which then
// is the right stage's input. Redirection is not a stack: opening an output
// replaces the current one, and a statement without redirection leaves an
// outer one in force.
//
// Every file a stage names is opened before any of them is changed: an
// output that is read-only or cannot be opened, or an input that is missing,
// refuses the statement with every file as it was, and files made for it are
// removed again. Only then is the first output emptied and attached. Further
// outputs (the tee) receive a copy of what the command wrote once it has
// run; a further output that is the first one under another spelling, or
// one named twice, is written once.
#pragma once

#include "app/toolkit/handles.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// The files the writer and the editor's input are attached to while a
// statement's streams are open: a started program takes them over.
struct RedirectionNames {
    std::wstring Output;
    bool Append = false;
    std::wstring Input;
};
extern RedirectionNames ActiveRedirection;

class StatementRedirects {
public:
    enum Flags : int32_t { Append = 1, Output = 4, Input = 8, PipeFile = 16, RemoveAfter = 32 };
    static constexpr int kMaxEntries = 32;

    StatementRedirects() = default;
    StatementRedirects(const StatementRedirects&) = delete;
    StatementRedirects& operator=(const StatementRedirects&) = delete;
    // Closes the streams, finishes the stage and removes temporary files.
    ~StatementRedirects();

    // Scans the stage that CommandArgs holds (its text is changed in place):
    // 0 when no further stage follows, 1 when a pipe does, -1 on failure.
    int Scan(wchar_t* text);
    // Closes the streams, finishes this stage and scans the next one.
    int NextStage();

private:
    struct Entry {
        int32_t Flags = 0;
        std::wstring Name;
    };
    // An output opened before the statement runs. Created: the file did not
    // exist and goes again if the statement is refused.
    struct OpenedOutput {
        size_t Source = 0; // its entry
        UniqueFile File;
        bool Created = false;
    };

    bool Add(int32_t flags, std::wstring name);
    bool OpenStreams();
    bool OpenOutput(size_t index, OpenedOutput& opened);
    void DropTeeTwins();
    void AbandonOutputs();
    void CloseStreams();
    void CopyToTees();
    void Finish();

    std::vector<Entry> entries_;
    bool failed_ = false;
    bool ownsStreams_ = false;
    // The streams of this stage opened and its command may run: only then
    // does the tee copy happen.
    bool opened_ = false;
    std::vector<OpenedOutput> outputs_; // the first output, then the tee targets
    int64_t appendStart_ = 0;
    std::wstring nextStage_;
    std::unique_ptr<wchar_t[]> stageText_; // a later stage's text, kLineMax units
};

// True when the stage text holds anything that the scan acts on: a statement
// without it needs no redirection table at all.
bool MayRedirect(const wchar_t* text);
