// Variables are the process environment: there is no second store. Names go
// through ResolveSubscripts, which gives the language its arrays (a.i is the
// variable a.3 while i is 3); a name that the environment lacks may still be
// one of the internal variables, computed when asked for.
#pragma once

// Size of a buffer that receives one value: 4096 units of text and the end.
constexpr int kValueMax = 4097;

// Reads a variable of exactly this name into buffer (size units; a longer
// value is cut silently). Returns the length read, 0 when unset or empty.
int ReadVariable(const wchar_t* name, wchar_t* buffer, int size);
// Sets name to value; a null or empty value deletes it. Message 4 and false
// when the environment refuses.
bool SetVariable(const wchar_t* name, const wchar_t* value);
// The name to use for a possibly dotted name: every part behind the first
// point that is not all digits is replaced by the value of that variable.
// Returns buffer (size units, cut silently).
const wchar_t* ResolveSubscripts(const wchar_t* name, wchar_t* buffer, int size);
// The value of %name% into buffer (kValueMax units): the environment first,
// then the internal variables, then the colon forms :~start,length and
// :find=replace. Null when the text of the reference is to stay as it stands.
const wchar_t* LookupVariable(const wchar_t* name, wchar_t* buffer);
// Applies the colon form behind the last colon of a reference to a non-empty
// value, in place (value holds kValueMax units). False when the form is
// malformed or its search part empty.
bool ApplyColonForm(wchar_t* value, const wchar_t* form);
