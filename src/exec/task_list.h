// The programs the shell sent to the background (Ctrl-Z during a wait):
// each keeps its process handle, its process id, the name it was started
// by and a task number, the lowest one free. A task leaves the list when its
// program has ended and the list is looked at, or when it is ended by tasks.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

struct BackgroundTask {
    int Number = 0;
    HANDLE Process = nullptr;
    DWORD ProcessId = 0;
    std::wstring Name;
};

class TaskList {
public:
    static constexpr int kMaxTasks = 64;

    TaskList() = default;
    TaskList(const TaskList&) = delete;
    TaskList& operator=(const TaskList&) = delete;
    ~TaskList();

    // Takes over the process handle; the task's number, or -1 when the list
    // is full (the caller keeps the handle then).
    int Add(HANDLE process, DWORD processId, const std::wstring& name);
    // Drops the tasks whose programs have ended.
    void Reap();
    const std::vector<BackgroundTask>& Tasks() const { return tasks_; }
    // Ends the task's program and drops it; false when there is no such task
    // or the program could not be ended.
    bool End(int number);

private:
    std::vector<BackgroundTask> tasks_;
};

extern TaskList TheTasks;
