// Redirection and pipes of one statement. The scan takes >, >>, < and | out
// of the stage text and attaches files to the output writer and to the
// editor's input for the length of the statement. A pipe is sequential: the
// left stage runs to its end with its output in a temporary file, which then
// is the right stage's input. Redirection is not a stack: opening an output
// replaces the current one, and a statement without redirection leaves an
// outer one in force.
#pragma once

#include <cstdint>
#include <string>

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

    bool Add(int32_t flags, std::wstring name);
    bool OpenStreams();
    bool OpenOutput(const Entry& entry);
    void CloseStreams();
    void Finish();
    void CopyToTee(const std::wstring& source, const Entry& target);

    Entry entries_[kMaxEntries];
    int count_ = 0;
    bool failed_ = false;
    bool ownsStreams_ = false;
    bool createdOutput_ = false;
    void* pendingOutput_ = nullptr; // opened, not yet handed to the writer
    int64_t appendStart_ = 0;
    std::wstring nextStage_;
    wchar_t stageText_[4096] = {};
};
