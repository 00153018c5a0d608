#include "app/toolkit/platform_text.h"

std::wstring PlatformErrorText(DWORD code)
{
    wchar_t* buffer = nullptr;
    DWORD n = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                 FORMAT_MESSAGE_IGNORE_INSERTS,
                             nullptr, code, 0, reinterpret_cast<LPWSTR>(&buffer), 0, nullptr);
    std::wstring text;
    if (n && buffer) {
        text.assign(buffer, n);
        LocalFree(buffer);
    }
    size_t cut = text.find_first_of(L"\r\n");
    if (cut != std::wstring::npos) text.resize(cut);
    while (!text.empty() && text.back() == L' ') text.pop_back();
    return text;
}
