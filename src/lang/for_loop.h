// ForLoop: one running for command. The parser cuts a private copy of the
// statement's tail into the variable, the list (or the numbers), the /f
// options and the body; each turn the loop hands out the body with the loop
// variable put in, and the caller runs it as a statement of its own.
//
// Items of the list are taken one at a time: a file pattern is searched when
// its turn comes, and a /f data source (a file, a string written to a
// temporary file, or a command's output caught in one) is opened when its
// turn comes. A /r loop runs the whole iteration again in each directory of
// the tree. Temporary files die with the loop; the directory it started in
// is restored.
#pragma once

#include "app/toolkit/omdib.h"
#include "lang/for_stream.h"

#include <memory>
#include <string>
#include <vector>

class ForLoop : public ForFileStream {
public:
    static constexpr int kMaxTemporaries = 20;

    ForLoop() = default;
    ~ForLoop() override;

    // 0 after a reported error (nothing runs), 1 a plain loop, 2 a loop per
    // directory (NextDirectory first).
    int Parse(const wchar_t* tail);
    // The statement of the next turn (possibly empty), or null at the end.
    // Failed tells whether the end came from a reported error.
    wchar_t* NextItem();
    // Changes into the next directory of the walk and starts the iteration
    // again; false after the last one (the starting directory is back).
    bool NextDirectory();
    bool Failed() const { return failed_; }

private:
    void ParseSwitches(wchar_t*& p);
    bool ParseList(wchar_t* p);
    bool ParseNumbers(wchar_t* p);
    bool ParseBody(wchar_t* p);
    void Restart();
    wchar_t* TakeItem();
    wchar_t* NextNumber();
    wchar_t* NextLine();
    bool OpenSource(wchar_t* item);
    void SearchPattern(const wchar_t* pattern);
    void CollectDirectories();
    std::wstring WriteString(const wchar_t* text);
    std::wstring CaptureCommand(const wchar_t* command);
    std::wstring NewTemporary();
    wchar_t* Substitute(const wchar_t* value);
    wchar_t* SubstituteFields(const wchar_t* line);
    void RestoreDirectory();

    wchar_t text_[kLineMax] = {};
    wchar_t bodyResult_[kLineMax] = {};
    std::vector<std::wstring> found_;
    std::vector<std::wstring> directories_;
    wchar_t* listStart_ = nullptr;
    wchar_t* list_ = nullptr; // the items not yet taken; null when none
    const wchar_t* variable_ = L"";
    const wchar_t* body_ = L"";
    std::wstring options_;
    std::wstring root_;
    std::wstring listCopy_;
    wchar_t savedDirectory_[kPathMax] = {};
    bool directorySaved_ = false;
    size_t foundIndex_ = 0;
    size_t directoryIndex_ = 0;
    double current_ = 0, first_ = 0, finish_ = 0, step_ = 1;
    int32_t numeric_ = 0;
    int32_t directoriesOnly_ = 0;
    int32_t recursive_ = 0;
    int32_t fileMode_ = 0;
    std::vector<std::wstring> temporaries_;
    std::vector<std::wstring> values_; // what the loop letters stand for this turn
    std::wstring letters_;
    bool opening_ = false; // the turn of opening a /f source is still to come
    bool failed_ = false;
};
