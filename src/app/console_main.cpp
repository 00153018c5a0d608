// ombc.exe: the console host. The same interpreter as the window program, with
// no window: every finished screen line goes to standard output as UTF-8, and
// keys and lines are read from standard input. With /C it exits with the
// ErrorLevel of the command it ran.
#include "app/console_host.h"
#include "app/globals.h"
#include "app/run_line.h"
#include "app/startup_args.h"
#include "app/startup_environment.h"
#include "app/toolkit/omdib.h"
#include "input/editor.h"
#include "lang/directories.h"
#include "lang/shell_command.h"

int wmain()
{
    ConsoleHost host;
    host.Install();
    InitOsFlags();
    LoadCharSplit();

    StartupArgs args = ParseStartupArgs(SkipArgW(GetCommandLineW()));
    // A directory that cannot be reached leaves the inherited one, silently.
    if (!args.Directory.empty()) ChangeDirectory(args.Directory.c_str());
    SettleStartupEnvironment();
    ApplyRedirectionChoice(args);
    host.SetInputIsCommands(!args.RunAndClose);

    if (!args.Command.empty()) {
        TheEditor.TypeLine(args.Command.c_str(), true);
        RunTopLevelLine(args.RunAndClose ? PromptAfter::No : PromptAfter::Yes);
        if (args.RunAndClose || host.ExitRequested()) return host.Finish(ErrorLevel);
    } else {
        ShowPrompt();
    }
    return host.Finish(host.RunInputLoop());
}
