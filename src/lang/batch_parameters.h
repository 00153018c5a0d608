// What the expansion of a batch line needs of the program that runs it: its
// parameters %0 to %9, their count %# and their text %*. Inside a procedure
// the procedure's frame answers instead, and shift is the provider's own
// business: Parameter(n) always answers for the current, shifted slots.
#pragma once

class BatchParameters {
public:
    virtual ~BatchParameters() = default;
    // Slot n (0 is the program's name) as written, quotes kept; null when the
    // slot is empty.
    virtual const wchar_t* Parameter(int n) const = 0;
    // The number of arguments the program was started with; not changed by shift.
    virtual int ParameterCount() const = 0;
    // The arguments as one text, as given at the start; not changed by shift.
    virtual const wchar_t* ParameterTail() const = 0;
};
