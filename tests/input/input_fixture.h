// In-process line input without a window: a host that answers waits from a
// script and counts what it was asked to do with the caret, and a fixture
// that starts every test on an empty screen at a prompt of ">".
#pragma once

#include "app/event_pump.h"
#include "app/globals.h"
#include "app/host.h"
#include "app/run_line.h"
#include "input/editor.h"
#include "input/prompt.h"
#include "input/unix_mode.h"
#include "screen/screen_store.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>

class ScriptedHost : public ShellHost {
public:
    std::deque<InputEvent> Script;
    int CaretShows = 0;
    int CaretHides = 0;
    int CaretRebuilds = 0;

    void PollBreak() override {}
    wchar_t ReadKey() override { return wchar_t(NextInput(InputWait::Key).Unit); }
    bool ReadLine(wchar_t* buffer, int size) override { return ReadTypedLine(buffer, size) != nullptr; }
    void RequestExit() override {}
    bool Interactive() const override { return true; }
    InputEvent NextInput(InputWait) override
    {
        if (Script.empty()) return {InputKind::End, 0, 0};
        InputEvent event = Script.front();
        Script.pop_front();
        return event;
    }
    void ShowCaret() override { ++CaretShows; }
    void HideCaret() override { ++CaretHides; }
    void RebuildCaret() override { ++CaretRebuilds; }

    void Chars(const std::wstring& text)
    {
        for (wchar_t unit : text) Script.push_back({InputKind::Char, unit, 0});
    }
    void KeyDown(unsigned virtualKey, unsigned modifiers = 0)
    {
        Script.push_back({InputKind::KeyDown, virtualKey, modifiers});
    }
};

class InputTest : public testing::Test {
protected:
    ScriptedHost host;
    ShellHost* savedHost = nullptr;

    void SetUp() override
    {
        savedHost = Host;
        Host = &host;
        CommandRunning = 0;
        InputMode = 0;
        TheScreen.BreakFlag = 0;
        TheScreen.ClearScreen();
        TheUnixMode.Unix = 0;
        TheUnixMode.Display = 0;
        OpenGroup.Clear();
        CaretHidden = 0;
        TheEditor.InsertMode = 1;
        TheEditor.EndOfInput = 0;
        TheEditor.Input.Close();
        ThePrompt.SetTemplate(L"$g");
        ShowPrompt();
    }
    void TearDown() override
    {
        ThePrompt.LoadSetting();
        TheEditor.Input.Close();
        TheEditor.EndOfInput = 0;
        Host = savedHost;
    }

    // Typed at the prompt; the result of the last unit (1: a command is ready).
    int Type(const std::wstring& text, unsigned modifiers = 0)
    {
        int result = 0;
        for (wchar_t unit : text) result = TheEditor.EditorChar(unit, modifiers);
        return result;
    }
    void Key(int virtualKey, unsigned modifiers = 0, int times = 1)
    {
        for (int i = 0; i < times; ++i) TheEditor.EditorKey(virtualKey, modifiers);
    }
    // Enter, and the line run when it completed a command.
    int EnterAndRun()
    {
        int complete = TheEditor.EditorChar(L'\r');
        if (complete) RunTopLevelLine();
        return complete;
    }
    static std::wstring Row(int y) { return TheScreen.RowText(y); }
    static std::wstring Line() { return TheEditor.Line; }
};
