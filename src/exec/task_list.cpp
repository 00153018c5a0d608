#include "exec/task_list.h"

#include <tlhelp32.h>

#include <algorithm>

TaskList TheTasks;

namespace {

// A program in the background usually stands behind oms32.exe: what it
// started goes first, so that ending the task ends the program itself.
void EndChildren(DWORD parent, int depth)
{
    if (depth > 8) return;
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) return;
    std::vector<DWORD> children;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry))
        if (entry.th32ParentProcessID == parent && entry.th32ProcessID != parent) children.push_back(entry.th32ProcessID);
    CloseHandle(snapshot);
    for (DWORD child : children) {
        EndChildren(child, depth + 1);
        HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, child);
        if (!process) continue;
        TerminateProcess(process, 1);
        CloseHandle(process);
    }
}

} // namespace

TaskList::~TaskList()
{
    for (BackgroundTask& task : tasks_) CloseHandle(task.Process);
}

int TaskList::Add(HANDLE process, DWORD processId, const std::wstring& name)
{
    Reap();
    if (int(tasks_.size()) >= kMaxTasks) return -1;
    int number = 1;
    for (const BackgroundTask& task : tasks_)
        if (task.Number == number) ++number;
    BackgroundTask task{number, process, processId, name};
    auto place = std::find_if(tasks_.begin(), tasks_.end(), [&](const BackgroundTask& t) { return t.Number > number; });
    tasks_.insert(place, std::move(task));
    return number;
}

void TaskList::Reap()
{
    auto ended = [](const BackgroundTask& task) {
        if (WaitForSingleObject(task.Process, 0) == WAIT_TIMEOUT) return false;
        CloseHandle(task.Process);
        return true;
    };
    tasks_.erase(std::remove_if(tasks_.begin(), tasks_.end(), ended), tasks_.end());
}

bool TaskList::End(int number)
{
    auto task = std::find_if(tasks_.begin(), tasks_.end(), [&](const BackgroundTask& t) { return t.Number == number; });
    if (task == tasks_.end()) return false;
    if (WaitForSingleObject(task->Process, 0) == WAIT_TIMEOUT) {
        EndChildren(task->ProcessId, 0);
        if (!TerminateProcess(task->Process, 1)) return false;
    }
    CloseHandle(task->Process);
    tasks_.erase(task);
    return true;
}
