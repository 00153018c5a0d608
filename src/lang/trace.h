// Tracing a batch program: the stepper. The interpreter shows every stage
// before it runs and waits until the user grants a step; the state lives on
// TheShell (TraceActive, TracePermitted, TraceStep, TraceHighlight), and the
// window or console text that shows it is a TraceView installed by the host.
// One step is one stage, so "echo a & echo b" takes two.
#pragma once

#include <string>
#include <vector>

class BatchProgram;

// What the stepper needs of whatever shows the trace. The user's choices come
// back through TraceGrantStep, TraceRunFreely and TraceStopRun, called from
// inside WaitForUser.
class TraceView {
public:
    virtual ~TraceView() = default;
    // Shows the view with its title; false when it cannot be shown.
    virtual bool Open(const std::wstring& title) = 0;
    virtual void Close() = 0;
    // The raw lines of the program being traced.
    virtual void FillList(const std::vector<std::wstring>& lines) = 0;
    // Marks line index (0-based) as the current one; -1 marks none.
    virtual void Highlight(int index) = 0;
    // The stage about to run; source is null when it is to stay as it is.
    virtual void ShowStage(const wchar_t* expanded, const wchar_t* source) = 0;
    // Step and Stop are dimmed while a command waits for the user.
    virtual void EnableStepping(bool enable) = 0;
    // Handles what the user does next (at least one event) and returns.
    virtual void WaitForUser() = 0;
};

// The view of the program in charge, or null: then trace runs untraced.
extern TraceView* TraceViewer;

// The user's three choices.
void TraceGrantStep();
void TraceRunFreely();
void TraceStopRun();

// The title: "Trace", and " - " with the path in display form when known.
std::wstring TraceTitle(const wchar_t* path);
// Opens the view for the program at path, with an empty list and no step
// granted; false when there is no view to open.
bool TraceBegin(const wchar_t* path);
// Closes the view, if open, and turns tracing off.
void TraceEnd();
// The gate before every stage while tracing: shows the stage and waits for a
// step. False when the user stopped: the stage must not run.
bool TraceGate(const wchar_t* expanded, const wchar_t* source);
// The current line of the running program, by index.
void TraceHighlightLine(int index);
// Shows another program's lines, as when one batch program starts another.
void TraceShowProgram(const BatchProgram& program, int highlight);

// Dims Step and Stop for its lifetime, while something waits for the user;
// afterwards they come back if tracing goes on and no break is pending.
class TraceUserWait {
public:
    explicit TraceUserWait(bool waits);
    ~TraceUserWait();
    TraceUserWait(const TraceUserWait&) = delete;
    TraceUserWait& operator=(const TraceUserWait&) = delete;

private:
    bool dimmed_;
};
