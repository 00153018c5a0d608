// The global singletons, in the one order that works: the settings store
// first, since every later constructor may read a setting, and the text
// screen and its view last. They are destroyed in reverse order at process end, and their
// destructors free memory only; nothing is saved there.
#include "app/errors.h"
#include "app/profile/profile.h"
#include "bars/status_bar.h"
#include "exec/capture_settings.h"
#include "input/completion.h"
#include "input/editor.h"
#include "input/history.h"
#include "input/prompt.h"
#include "input/unix_mode.h"
#include "lang/shell_command.h"
#include "screen/render_window.h"
#include "screen/screen_store.h"

ProfileStore TheProfile;
CaptureSettings TheCaptureSettings;
ShellCommand TheShell;
StatusBar TheStatusBar;
PromptState ThePrompt;
ErrorReporter TheErrors;
UnixMode TheUnixMode;
// The editor's history comes with it, loaded from the store.
HistoryList TheHistory;
TabSettings TheTabSettings;
CommandLineEditor TheEditor;
ScreenStore TheScreen;
ScreenView TheView;
// Definitions in one file are built in order, so this runs right after the
// screen: from here on a report may print.
static const int ScreenReady = (TheErrors.ScreenUp = 1);
static const int CaptureReady = (TheCaptureSettings.Load(), 1);
