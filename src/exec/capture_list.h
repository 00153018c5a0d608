// CaptureList: CAPTURE.LST beside the shell, the programs that must not be
// captured. Each line, after leading white space, is a program's full path;
// empty lines and lines starting with ";" are skipped. The file is read in
// whatever encoding its mark says; a new one is written as UTF-16 with its
// mark and hidden. Paths compare without regard to case.
//
// The launch asks about every console program, so the entries are kept and
// read again only when the file's time or size changed.
#pragma once

#include <string>
#include <vector>

enum class ListChange { Done, AlreadyThere, NoSuchEntry, Failed };

// Whether program (a full path) is listed.
bool InCaptureList(const wchar_t* program);
// The entries in file order.
std::vector<std::wstring> CaptureEntries();
// Appends path unless it is listed already.
ListChange AddCaptureEntry(const std::wstring& path);
// Drops every line naming path; the file goes when no line remains. Done or
// NoSuchEntry, or Failed when the file could not be written (it is then as
// it was).
ListChange RemoveCaptureEntry(const std::wstring& path);
