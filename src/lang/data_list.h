// DataList: the inline list of values that data fills and read walks. One per
// batch program, and one for the prompt.
#pragma once

#include <string>
#include <vector>

struct DataList {
    std::vector<std::wstring> Items;
    size_t ReadIndex = 0;
};
