#include "files/arg_paths.h"

#include "app/toolkit/omdib.h"
#include "files/long_path.h"
#include "lang/command_args.h"

#include <string>

namespace {

std::wstring argPath;
DWORD argAttributes = INVALID_FILE_ATTRIBUTES;
wchar_t rememberedExtension[kPathMax];
wchar_t currentDirectory[] = L".";

wchar_t* Argument(int i)
{
    if (i <= 0 || i > CommandArgs.ArgCount) return currentDirectory;
    return CommandArgs.Args[i - 1];
}

bool IsDriveRoot(const std::wstring& path)
{
    return (path.size() == 3 && path[1] == L':' && path[2] == L'\\') ||
           (path.size() > 3 && path[0] == L'\\' && path.back() == L'\\');
}

} // namespace

const wchar_t* ArgNormalised(int i)
{
    wchar_t* arg = Argument(i);
    int length = 0;
    for (wchar_t* p = arg; *p; ++p, ++length)
        if (*p == L'/') *p = L'\\';
    if (length > 1 && arg[length - 1] == L'\\' && arg[length - 2] != L':') arg[--length] = 0;
    if (length >= kPathMax) {
        rememberedExtension[0] = 0;
        return arg;
    }
    wchar_t drive[kPathMax], directory[kPathMax], name[kPathMax], merged[kPathMax];
    FNSplitW(arg, drive, directory, name, rememberedExtension);
    FNMergeW(merged, drive, directory, name, rememberedExtension);
    if (lstrlenW(merged) <= length) lstrcpyW(arg, merged);
    return arg;
}

const wchar_t* ArgRawPath(int i)
{
    const wchar_t* arg = ArgNormalised(i);
    argAttributes = INVALID_FILE_ATTRIBUTES;
    DWORD needed = GetFullPathNameW(arg, 0, nullptr, nullptr);
    argPath.assign(needed, L'\0');
    DWORD n = needed ? GetFullPathNameW(arg, needed, argPath.data(), nullptr) : 0;
    if (n == 0 || n >= needed) {
        argPath.clear();
        return argPath.c_str();
    }
    argPath.resize(n);
    // The full-path operation drops a name's trailing dot, which here means
    // "the name without extension".
    if (lstrcmpW(rememberedExtension, L".") == 0 && argPath.back() != L'.') argPath += L'.';
    std::wstring holder;
    argAttributes = GetFileAttributesW(PlatformPath(argPath.c_str(), holder));
    CommandArgs.FileAttributes = uint16_t(argAttributes);
    return argPath.c_str();
}

const wchar_t* ArgFullPath(int i)
{
    ArgRawPath(i);
    if (argPath.empty()) return argPath.c_str();
    if (IsDriveRoot(argPath)) argPath += L'*';
    else if (argAttributes != INVALID_FILE_ATTRIBUTES && (argAttributes & FILE_ATTRIBUTE_DIRECTORY))
        argPath += L"\\*";
    return argPath.c_str();
}

const wchar_t* ArgDirectory(int i)
{
    ArgRawPath(i);
    if (argPath.empty() || argAttributes == INVALID_FILE_ATTRIBUTES || !(argAttributes & FILE_ATTRIBUTE_DIRECTORY))
        return nullptr;
    return argPath.c_str();
}

DWORD ArgAttributes() { return argAttributes; }
