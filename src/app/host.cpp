#include "app/host.h"

namespace {

// Stands in before a host is set up: no events, and every wait is answered
// with Ctrl-C so that nothing can hang.
class DetachedHost : public ShellHost {
public:
    void PollBreak() override {}
    wchar_t ReadKey() override { return 3; }
    bool ReadLine(wchar_t* buffer, int size) override
    {
        if (size > 0) buffer[0] = 0;
        return false;
    }
    void RequestExit() override {}
    bool Interactive() const override { return false; }
};

DetachedHost detachedHost;

} // namespace

ShellHost* Host = &detachedHost;
