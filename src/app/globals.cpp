#include "app/globals.h"

#include "app/profile/profile.h"

HWND MainWindow = nullptr;
HINSTANCE AppInstance = nullptr;
int FirstInstance = 0;
int CommandRunning = 0;
wchar_t CharSplit = L'&';
int UnicodeRedirection = 0;
int TickCount = 0;
int EightBitDisplay = 1;
int TahomaPresent = 0;
wchar_t SelfCommandLine[4096];
OsFlagSet OsFlags;

OSVERSIONINFOW PlatformVersion()
{
    // GetVersion lies to programs without a manifest; RtlGetVersion does not.
    OSVERSIONINFOW info{};
    info.dwOSVersionInfoSize = sizeof(info);
    using RtlGetVersionFn = LONG(WINAPI*)(OSVERSIONINFOW*);
    auto rtlGetVersion = reinterpret_cast<RtlGetVersionFn>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    if (!rtlGetVersion || rtlGetVersion(&info) != 0) {
        info.dwMajorVersion = 6;
        info.dwMinorVersion = 1;
    }
    return info;
}

void InitOsFlags()
{
    OSVERSIONINFOW info = PlatformVersion();
    DWORD major = info.dwMajorVersion, minor = info.dwMinorVersion;
    OsFlags = OsFlagSet{};
    OsFlags.IsNT4 = major > 3;
    OsFlags.IsWin2000 = major > 4;
    OsFlags.IsXP = (major > 4 && minor != 0) || major > 5;
    OsFlags.IsVista = major > 5;
    OsFlags.IsWin7 = major > 5 && (minor != 0 || major > 6);
    OsFlags.IsWin8 = major > 5 && (minor > 1 || major > 6);
}

void LoadCharSplit()
{
    int value = ProfileReadInt(L"Ombrel", L"CharSplit", 0);
    CharSplit = (value > 32 && value < 0xFFFF && value != 127) ? wchar_t(value) : L'&';
}
