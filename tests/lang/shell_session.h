// One ombc.exe kept running in a folder, fed a line at a time, so a test can
// look at the files between statements. Each line is followed by an echo of
// a marker; the line has ended when the marker comes back. A line that does
// not end in time counts as a hang, and the shell is stopped.
#pragma once

#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"

#include <windows.h>

#include <string>
#include <vector>

namespace lang_test {

class ShellSession {
public:
    explicit ShellSession(const std::wstring& folder)
    {
        SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
        HANDLE outRead, outWrite, inRead, inWrite;
        if (!CreatePipe(&outRead, &outWrite, &inherit, 0) || !CreatePipe(&inRead, &inWrite, &inherit, 0)) return;
        outRead_.reset(outRead);
        inWrite_.reset(inWrite);
        UniqueHandle outWriteOwner(outWrite), inReadOwner(inRead);
        SetHandleInformation(outRead, HANDLE_FLAG_INHERIT, 0);
        SetHandleInformation(inWrite, HANDLE_FLAG_INHERIT, 0);
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = inRead;
        startup.hStdOutput = outWrite;
        startup.hStdError = outWrite;
        wchar_t self[MAX_PATH];
        GetModuleFileNameW(nullptr, self, MAX_PATH);
        std::wstring path = self;
        std::wstring commandLine = L"\"" + path.substr(0, path.find_last_of(L"\\/") + 1) + L"ombc.exe\"";
        PROCESS_INFORMATION process{};
        if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                            folder.c_str(), &startup, &process))
            return;
        process_.reset(process.hProcess);
        CloseHandle(process.hThread);
        arrived_.reset(CreateEventW(nullptr, FALSE, FALSE, nullptr));
        InitializeCriticalSection(&lock_);
        reader_.reset(CreateThread(nullptr, 0, &ShellSession::ReadOutput, this, 0, nullptr));
    }

    ~ShellSession()
    {
        inWrite_.reset();
        if (process_ && WaitForSingleObject(process_.get(), 5000) != WAIT_OBJECT_0) TerminateProcess(process_.get(), 1);
        if (reader_) {
            WaitForSingleObject(reader_.get(), INFINITE);
            DeleteCriticalSection(&lock_);
        }
    }

    ShellSession(const ShellSession&) = delete;
    ShellSession& operator=(const ShellSession&) = delete;

    bool Started() const { return reader_.valid(); }

    // Runs one line; false when it did not end within the time given. The
    // text it printed goes to output, lines joined by "\n".
    bool Run(const std::wstring& line, std::wstring& output, DWORD milliseconds = 20000)
    {
        StringHolder holder;
        std::string typed = ToUtf8(holder, line.c_str());
        typed += "\r\necho " + std::string(kMarker) + "\r\n";
        DWORD written = 0;
        if (!WriteFile(inWrite_.get(), typed.data(), DWORD(typed.size()), &written, nullptr)) return false;
        DWORD deadline = GetTickCount() + milliseconds;
        for (;;) {
            std::string bytes = Take();
            size_t end = bytes.find(std::string(kMarker) + "\r\n");
            if (end != std::string::npos) {
                Give(bytes.substr(end + std::string(kMarker).size() + 2));
                output = Lines(bytes.substr(0, end));
                return true;
            }
            Give(bytes);
            DWORD now = GetTickCount();
            if (int(deadline - now) <= 0 || WaitForSingleObject(arrived_.get(), deadline - now) == WAIT_TIMEOUT) {
                TerminateProcess(process_.get(), 1);
                return false;
            }
        }
    }

private:
    static constexpr const char* kMarker = "@@end-of-line@@";

    static DWORD WINAPI ReadOutput(void* data)
    {
        auto* self = static_cast<ShellSession*>(data);
        char chunk[4096];
        DWORD got = 0;
        while (ReadFile(self->outRead_.get(), chunk, sizeof(chunk), &got, nullptr) && got > 0) {
            EnterCriticalSection(&self->lock_);
            self->pending_.append(chunk, got);
            LeaveCriticalSection(&self->lock_);
            SetEvent(self->arrived_.get());
        }
        return 0;
    }

    std::string Take()
    {
        EnterCriticalSection(&lock_);
        std::string bytes = std::move(pending_);
        pending_.clear();
        LeaveCriticalSection(&lock_);
        return bytes;
    }

    void Give(const std::string& bytes)
    {
        EnterCriticalSection(&lock_);
        pending_.insert(0, bytes);
        LeaveCriticalSection(&lock_);
    }

    static std::wstring Lines(const std::string& bytes)
    {
        StringHolder holder;
        const wchar_t* wide = FromUtf8(holder, bytes.c_str());
        std::wstring text;
        for (const wchar_t* p = wide ? wide : L""; *p; ++p)
            if (*p != L'\r') text += *p;
        return text;
    }

    UniqueHandle process_, reader_, arrived_;
    UniqueFile outRead_, inWrite_;
    CRITICAL_SECTION lock_{};
    std::string pending_;
};

} // namespace lang_test
