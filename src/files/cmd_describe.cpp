// describe: gives a file a description in its directory's descript.ion, or
// takes it away.
#include "app/errors.h"
#include "files/arg_paths.h"
#include "files/descriptions.h"
#include "lang/builtins.h"
#include "lang/command_args.h"

#include <string>

void CmdDescribe()
{
    if (RejectSwitches()) return;
    int arguments = CommandArgs.ArgCount;
    if (arguments != 1 && arguments != 2) {
        ReportId(1);
        return;
    }
    std::wstring file = ArgRawPath(1);
    DWORD missing = ArgAttributes() == INVALID_FILE_ATTRIBUTES ? GetLastError() : 0;
    DescriptionStore store;
    store.Load(file.c_str());
    if (arguments == 1) {
        if (store.Remove(file.c_str())) ReportId(33);
        else store.Save();
        return;
    }
    if (missing) {
        TheErrors.ReportPlatformError(missing);
        return;
    }
    if (store.Add(file.c_str(), CommandArgs.Args[1]) || store.Save()) ReportId(34);
}
