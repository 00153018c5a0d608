#include "exec/run_program.h"

#include "app/errors.h"
#include "lang/shell_command.h"

void RunProgram(BatchProgram*)
{
    ReportId(5);
    ErrorLevel = 1;
}
