// A test with the real main window and the window host installed in this
// process; the window and its classes go again when the test ends.
#pragma once

#include "app/globals.h"
#include "app/host.h"
#include "app/main_window.h"
#include "app/window_host.h"

#include <gtest/gtest.h>

#include <string>

class MainWindowTest : public testing::Test {
protected:
    WindowHost host;
    ShellHost* savedHost = nullptr;
    bool registered = false;

    void SetUp() override
    {
        savedHost = Host;
        HINSTANCE instance = GetModuleHandleW(nullptr);
        WNDCLASSW known;
        registered = !GetClassInfoW(instance, L"Ombrel", &known);
        if (registered) {
            ASSERT_TRUE(RegisterWindowClasses(instance));
        }
        MainWindow = CreateMainWindow(instance);
        ASSERT_NE(MainWindow, nullptr);
        host.Install();
        Pump(); // whatever creation and earlier tests left behind
    }
    void TearDown() override
    {
        DestroyWindow(MainWindow);
        MainWindow = nullptr;
        Pump(); // takes the quit that the window's end posted
        // Other tests register the classes themselves.
        if (registered)
            for (const wchar_t* name : {L"Ombrel", L"OmbrelDialog", L"OmbrelShadowDialog"})
                UnregisterClassW(name, GetModuleHandleW(nullptr));
        Host = savedHost;
    }

    static void Pump()
    {
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
    }
    // A program built beside the test program.
    static std::wstring Program(const wchar_t* name)
    {
        wchar_t self[MAX_PATH];
        DWORD n = GetModuleFileNameW(nullptr, self, MAX_PATH);
        std::wstring path(self, n);
        return path.substr(0, path.find_last_of(L"\\/") + 1) + name;
    }
    static void Post(const std::wstring& text)
    {
        for (wchar_t unit : text) PostMessageW(MainWindow, WM_CHAR, unit, 0);
    }
};
