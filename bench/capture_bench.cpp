// Console capture throughput: a console program writing text lines into the
// screen store, through the console loader (in its pseudo console, and on
// the loader's own pipes) and through the pipe route, in MB/s, in one run.
//
//   wine-run capture_bench.exe [megabytes]
#include "bench_support.h"

#include "exec/capture_settings.h"
#include "lang/shell_command.h"
#include "screen/screen_store.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

void Throughput(const char* route, int megabytes)
{
    double seconds = TimeFlood(megabytes);
    std::printf("%-28s %10.3f s  %8.1f MB/s (exit code %d)\n", route, seconds, seconds > 0 ? megabytes / seconds : 0.0,
                int(ErrorLevel));
}

} // namespace

int main(int argc, char** argv)
{
    int megabytes = argc > 1 ? std::atoi(argv[1]) : 100;
    std::printf("%d MB of text lines from a console program into the screen\n", megabytes);
    TheCaptureSettings.Copyright = 0;
    TheCaptureSettings.Emulator = 1;
    Throughput("loader, pseudo console", megabytes);
    SetEnvironmentVariableW(L"OMLD32_PIPES", L"1");
    Throughput("loader, its own pipes", megabytes);
    SetEnvironmentVariableW(L"OMLD32_PIPES", nullptr);
    TheCaptureSettings.Emulator = 0;
    Throughput("pipe route", megabytes);
    return 0;
}
