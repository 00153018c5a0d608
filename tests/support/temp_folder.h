// A fresh folder under the test's scratch drive, removed with all its
// contents when the test ends.
#pragma once

#include <string>

class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::wstring& Path() const { return path_; }
    // Full name of an entry inside the folder.
    std::wstring operator/(const std::wstring& name) const { return path_ + L"\\" + name; }

    void WriteBytes(const std::wstring& name, const std::string& bytes) const;
    std::string ReadBytes(const std::wstring& name) const;
    // The file as text: UTF-16 with its mark, else UTF-8 or the code page.
    std::wstring ReadText(const std::wstring& name) const;
    bool Exists(const std::wstring& name) const;

private:
    std::wstring path_;
};
