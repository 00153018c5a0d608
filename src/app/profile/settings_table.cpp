#include "app/profile/settings_table.h"

#include "app/profile/profile.h"

#include <windows.h>

namespace {

// clang-format off
const SettingDefault kSettings[] = {
    {L"Ombrel", L"XOrigin", 40, nullptr},         {L"Ombrel", L"YOrigin", 40, nullptr},
    {L"Ombrel", L"ScreenWidth", 80, nullptr},     {L"Ombrel", L"ScreenHeight", 24, nullptr},
    {L"Ombrel", L"Line", 0, nullptr},             {L"Ombrel", L"Tips", 1, nullptr},
    {L"Ombrel", L"CharSplit", 0, nullptr},        {L"Ombrel", L"MaxWidth", 220, nullptr},
    {L"Ombrel", L"MaxHeight", 120, nullptr},      {L"Ombrel", L"MaxScroll", 2500, nullptr},
    {L"Ombrel", L"FontHeight", 12, nullptr},      {L"Ombrel", L"FontWidth", 8, nullptr},
    {L"Ombrel", L"FontFamily", 0, L"Courier New"}, {L"Ombrel", L"FontPoint", 10, nullptr},
    {L"Ombrel", L"FontBold", 1, nullptr},         {L"Ombrel", L"AlphaHighlight", 1, nullptr},
    {L"Ombrel", L"ScrollBack", 250, nullptr},     {L"Ombrel", L"ColourEditor", 0, nullptr},
    {L"Ombrel", L"ShortTabs", 1, nullptr},        {L"Ombrel", L"AutoDir", 1, nullptr},
    {L"Ombrel", L"MapTabs", 0, nullptr},          {L"Ombrel", L"IncHidden", 0, nullptr},
    {L"Ombrel", L"DisplayMacro", 0, L"off"},
    {L"Ombrel", L"Prompt", 0, L"$e[1;56;60m$p$e[53m$g$e[0;57m"},
    {L"Ombrel", L"Capture", 1, nullptr},          {L"Ombrel", L"Emulator", 1, nullptr},
    {L"Ombrel", L"Logging", 0, nullptr},          {L"Ombrel", L"VDM", 0, nullptr},
    {L"Ombrel", L"Console", 1, nullptr},          {L"Ombrel", L"GUIStart", 1, nullptr},
    {L"Ombrel", L"UnicodeRedirection", 0, nullptr}, {L"Ombrel", L"LastSelectedExe", 0, L"none"},
    {L"Ombrel", L"TrayIcon", 0, nullptr},         {L"Ombrel", L"DriveIcon", 0, nullptr},
    {L"Ombrel", L"DriveHiddenAttrib", 0, nullptr}, {L"Ombrel", L"LargeIcons", 0, nullptr},
    {L"Ombrel", L"LastTab", 0, nullptr},          {L"Ombrel", L"LastTab2", 0, nullptr},
    {L"Ombrel", L"RecycleBin", 0, nullptr},       {L"Ombrel", L"AutoCheck", 0, nullptr},
    {L"Ombrel", L"LastCheck", 0, L"none"},        {L"Ombrel", L"Mail", 0, nullptr},
    {L"Ombrel", L"ProgMenuCache", 0, nullptr},    {L"Ombrel", L"Editor", 0, L"notepad"},

    {L"HistoryList", L"XOrigin", 0, nullptr},     {L"HistoryList", L"YOrigin", 0, nullptr},
    {L"HistoryList", L"Width", 100, nullptr},     {L"HistoryList", L"Height", 200, nullptr},
    {L"HistoryList", L"InFront", 0, nullptr},     {L"HistoryList", L"Display", 0, nullptr},

    {L"UnixMode", L"Unix", 0, nullptr},           {L"UnixMode", L"Case", 0, L"none"},
    {L"UnixMode", L"Display", 0, nullptr},

    {L"Colour40", L"DefaultText", 0, nullptr},    {L"Colour40", L"DefaultScheme", 0, nullptr},
    {L"Colour40", L"FileName", 16, nullptr},      {L"Colour40", L"HighFile", 39, nullptr},
    {L"Colour40", L"Number", 13, nullptr},        {L"Colour40", L"Text", 38, nullptr},
    {L"Colour40", L"HighText", 39, nullptr},      {L"Colour40", L"BoldText", 24, nullptr},
    {L"Colour40", L"EnvName", 32, nullptr},       {L"Colour40", L"EnvStr", 16, nullptr},
    {L"Colour40", L"Error", 2, nullptr},          {L"Colour40", L"LHS", 16, nullptr},
    {L"Colour40", L"HighLHS", 13, nullptr},       {L"Colour40", L"RHS", 24, nullptr},
    {L"Colour40", L"FileDate", 32, nullptr},      {L"Colour40", L"FileTime", 24, nullptr},
    {L"Colour40", L"FileAttrib", 26, nullptr},    {L"Colour40", L"FileDesc", 38, nullptr},
    {L"Colour40", L"BackGrd", 0, nullptr},

    {L"Fonts", L"CurrentSize", 0, nullptr},       {L"Fonts", L"CurrentBold", 1, nullptr},
    {L"Fonts", L"CurrentPoint", 10, nullptr},

    {L"Background", L"Picture", 0, nullptr},      {L"Background", L"Transparency", 100, nullptr},
    {L"Background", L"Position", 2, nullptr},     {L"Background", L"File", 0, L""},

    {L"Buttons", L"Exit", 0, nullptr},            {L"Buttons", L"Shell", 0, nullptr},
    {L"Buttons", L"Help", 0, nullptr},            {L"Buttons", L"LargeButtons", 1, nullptr},
    {L"Buttons", L"Show", 1, nullptr},            {L"Buttons", L"ShowDrive", 1, nullptr},

    {L"StatusBar", L"24hour", 0, nullptr},        {L"StatusBar", L"Alarm1", 0, nullptr},
    {L"StatusBar", L"Alarm2", 0, nullptr},        {L"StatusBar", L"Hour1", 12, nullptr},
    {L"StatusBar", L"Hour2", 12, nullptr},        {L"StatusBar", L"Minute1", 0, nullptr},
    {L"StatusBar", L"Minute2", 0, nullptr},       {L"StatusBar", L"Hourly", 0, nullptr},
    {L"StatusBar", L"HalfHourly", 0, nullptr},    {L"StatusBar", L"Plain", 1, nullptr},
    {L"StatusBar", L"Colour", 234, nullptr},      {L"StatusBar", L"InFront", 0, nullptr},
    {L"StatusBar", L"Memory", 0, nullptr},        {L"StatusBar", L"Display", 0, nullptr},

    {L"Sounds", L"Event0", 0, L"2"},

    {L"ContextMenu", L"Enable", 1, nullptr},      {L"ContextMenu", L"CMD.EXE", 1, nullptr},
    {L"ContextMenu", L"Cascade", 0, nullptr},

    {L"Path", L"Font", 0, L"."},                  {L"Path", L"Background", 0, L"."},
    {L"Path", L"SaveFile", 0, L"."},              {L"Path", L"Sound", 0, L"."},
    {L"Path", L"Executable", 0, L"."},            {L"Path", L"ClipboardSave", 0, L"."},
    {L"Path", L"ClipboardLoad", 0, L"."},         {L"Path", L"Button", 0, L"."},
};
// clang-format on

} // namespace

const SettingDefault* FindSetting(const wchar_t* section, const wchar_t* key)
{
    for (const auto& setting : kSettings)
        if (lstrcmpiW(setting.Section, section) == 0 && lstrcmpiW(setting.Key, key) == 0) return &setting;
    return nullptr;
}

int SettingInt(const wchar_t* section, const wchar_t* key)
{
    const SettingDefault* setting = FindSetting(section, key);
    return ProfileReadInt(section, key, setting ? setting->Number : 0);
}

int SettingString(const wchar_t* section, const wchar_t* key, wchar_t* buffer, int size)
{
    const SettingDefault* setting = FindSetting(section, key);
    return ProfileReadString(section, key, setting && setting->Text ? setting->Text : L"", buffer, size);
}
