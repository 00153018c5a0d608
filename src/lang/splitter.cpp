#include "lang/splitter.h"

#include "app/globals.h"
#include "lang/command_args.h"
#include "lang/expand.h"

#include <cstring>
#include <cwchar>
#include <memory>
#include <vector>

const wchar_t* FindStatementEnd(const wchar_t* p)
{
    while (*p) {
        wchar_t c = *p;
        if (c == L'^') p += p[1] ? 2 : 1;
        else if (c == L'"') p = SkipStrW(p + 1);
        else if (c == L'(' || c == L'{') p = SkipGroupW(p);
        else if (c == L'&' || c == CharSplit) return p;
        else ++p;
    }
    return p;
}

bool StatementSplitter::Start(const wchar_t* line)
{
    CopyCutW(Rest, line, kLineMax);
    Current[0] = 0;
    pending_ = Rest[0] != 0;
    return pending_;
}

bool StatementSplitter::Next(bool expand)
{
    if (!pending_) return false;
    wchar_t* cut = const_cast<wchar_t*>(FindStatementEnd(Rest));
    bool more = *cut != 0;
    wchar_t statement[kLineMax];
    int n = int(cut - Rest);
    std::memcpy(statement, Rest, size_t(n) * sizeof(wchar_t));
    statement[n] = 0;
    if (more) std::memmove(Rest, cut + 1, (std::wcslen(cut + 1) + 1) * sizeof(wchar_t));
    else Rest[0] = 0;
    pending_ = more;

    if (expand) ExpandLine(statement, Current, kLineMax);
    else CopyCutW(Current, statement, kLineMax);
    CommandArgs.Parse(Current);
    return true;
}

namespace {

std::vector<std::unique_ptr<StatementSplitter>> splitterPool;
size_t splittersInUse = 0;

} // namespace

SplitterLease::SplitterLease()
{
    if (splittersInUse == splitterPool.size()) splitterPool.push_back(std::make_unique<StatementSplitter>());
    splitter_ = splitterPool[splittersInUse++].get();
}

SplitterLease::~SplitterLease() { --splittersInUse; }
