// Points the settings store at another store for one test, and back at the
// process's own store when the test ends.
#pragma once

#include "app/profile/profile.h"

#include <string>

class StoreScope {
public:
    // argument: a settings argument as the command line gives it (INI=..., USE=...).
    explicit StoreScope(const std::wstring& argument) { TheProfile.SelectStore(argument.c_str()); }
    ~StoreScope() { TheProfile.SelectStore(L""); }
    StoreScope(const StoreScope&) = delete;
    StoreScope& operator=(const StoreScope&) = delete;
};
