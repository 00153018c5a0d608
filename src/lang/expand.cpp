#include "lang/expand.h"

#include "app/toolkit/omdib.h"
#include "lang/expand_output.h"
#include "lang/tilde.h"
#include "lang/variables.h"


namespace {

// The next blank, tab or "%" from p, or the end.
const wchar_t* NameEnd(const wchar_t* p)
{
    while (*p && *p != L'%' && !IsWhite(*p)) ++p;
    return p;
}

// %name% with p at the first "%" and close at the second: the value, or the
// reference itself when the lookup says it stays.
void PutReference(const wchar_t* p, const wchar_t* close, ExpandOutput& out)
{
    wchar_t name[kValueMax], value[kValueMax];
    int length = int(close - p - 1);
    CopyCutW(name, p + 1, (length < kValueMax - 1 ? length : kValueMax - 1) + 1);
    const wchar_t* found = LookupVariable(name, value);
    if (found) out.Put(found);
    else out.Put(p, close + 1);
}

class ParameterSelector : public TildeSelector {
public:
    explicit ParameterSelector(const BatchParameters& batch) : batch_(batch) {}
    bool IsSelector(wchar_t c) const override { return c >= L'0' && c <= L'9'; }
    const wchar_t* Value(wchar_t c) const override { return batch_.Parameter(c - L'0'); }

private:
    const BatchParameters& batch_;
};

// The forms that belong to the batch program rather than the environment:
// %0 to %9, %#, %*, %~ and %%. p is at the "%"; returns the position behind
// the form, or null when none stands there.
const wchar_t* PutBatchForm(const wchar_t* p, const BatchParameters& batch, ExpandOutput& out)
{
    wchar_t next = p[1];
    if (next >= L'0' && next <= L'9') {
        const wchar_t* value = batch.Parameter(next - L'0');
        if (value) out.Put(value);
        return p + 2;
    }
    if (next == L'%') {
        out.Put(L'%');
        return p + 2;
    }
    if (next == L'#') {
        wchar_t count[16];
        out.Put(i64tow_ex(batch.ParameterCount(), count, 10));
        return p + 2;
    }
    if (next == L'*') {
        const wchar_t* tail = batch.ParameterTail();
        if (tail) out.Put(tail);
        return p + 2;
    }
    if (next == L'~') return ExpandTildeForm(p + 2, ParameterSelector(batch), out);
    return nullptr;
}

// A brace group in a batch line: only the batch forms are replaced; the
// environment is left for the moment each statement inside runs.
const wchar_t* PutBraceGroup(const wchar_t* p, const BatchParameters& batch, ExpandOutput& out)
{
    const wchar_t* end = SkipGroupW(p);
    while (p < end) {
        const wchar_t* behind = *p == L'%' ? PutBatchForm(p, batch, out) : nullptr;
        if (behind) {
            p = behind;
            continue;
        }
        out.Put(*p++);
    }
    return end;
}

} // namespace

// line := { "^" unit | "{" group | "%" name "%" | quote | unit }
void ExpandLine(const wchar_t* source, wchar_t* destination, int size)
{
    ExpandOutput out(destination, size);
    bool quoted = false;
    const wchar_t* p = source;
    while (*p) {
        wchar_t c = *p;
        if (c == L'^') {
            out.Put(*p++);
            if (*p) out.Put(*p++);
        } else if (c == L'{' && !quoted) {
            const wchar_t* end = SkipGroupW(p);
            out.Put(p, end);
            p = end;
        } else if (c == L'%') {
            const wchar_t* close = NameEnd(p + 1);
            if (*close == L'%' && close > p + 1) {
                PutReference(p, close, out);
                p = close + 1;
            } else {
                out.Put(*p++);
            }
        } else {
            if (c == L'"') quoted = !quoted;
            out.Put(*p++);
        }
    }
}

// line := { "{" group | "%" batch-form | "%" name "%" | "%" unit | quote | unit }
void ExpandBatchLine(const BatchParameters& batch, const wchar_t* source, wchar_t* destination, int size)
{
    ExpandOutput out(destination, size);
    bool quoted = false;
    const wchar_t* p = source;
    while (*p) {
        wchar_t c = *p;
        if (c == L'{' && !quoted) {
            p = PutBraceGroup(p, batch, out);
        } else if (c == L'%') {
            if (const wchar_t* behind = PutBatchForm(p, batch, out)) {
                p = behind;
                continue;
            }
            const wchar_t* close = NameEnd(p + 1);
            if (*close == L'%') {
                PutReference(p, close, out);
                p = close + 1;
            } else {
                // A lone "%" vanishes; the unit behind it stays.
                ++p;
                if (*p == L'"') quoted = !quoted;
                if (*p) out.Put(*p++);
            }
        } else {
            if (c == L'"') quoted = !quoted;
            out.Put(*p++);
        }
    }
}
