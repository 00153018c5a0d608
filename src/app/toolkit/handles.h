// Owners for platform handles, so that every early return closes what it opened.
#pragma once

#include <windows.h>

#include <utility>

template <class Traits> class UniqueResource {
public:
    using Handle = typename Traits::Handle;
    UniqueResource() = default;
    explicit UniqueResource(Handle h) : handle_(h) {}
    UniqueResource(const UniqueResource&) = delete;
    UniqueResource& operator=(const UniqueResource&) = delete;
    UniqueResource(UniqueResource&& other) noexcept : handle_(std::exchange(other.handle_, Traits::Invalid())) {}
    UniqueResource& operator=(UniqueResource&& other) noexcept
    {
        if (this != &other) reset(std::exchange(other.handle_, Traits::Invalid()));
        return *this;
    }
    ~UniqueResource() { reset(); }

    Handle get() const { return handle_; }
    bool valid() const { return handle_ != Traits::Invalid(); }
    explicit operator bool() const { return valid(); }
    Handle release() { return std::exchange(handle_, Traits::Invalid()); }
    void reset(Handle h = Traits::Invalid())
    {
        if (valid()) Traits::Close(handle_);
        handle_ = h;
    }

private:
    Handle handle_ = Traits::Invalid();
};

struct FileHandleTraits {
    using Handle = HANDLE;
    static Handle Invalid() { return INVALID_HANDLE_VALUE; }
    static void Close(Handle h) { CloseHandle(h); }
};
struct KernelHandleTraits {
    using Handle = HANDLE;
    static Handle Invalid() { return nullptr; }
    static void Close(Handle h) { CloseHandle(h); }
};
struct FindHandleTraits {
    using Handle = HANDLE;
    static Handle Invalid() { return INVALID_HANDLE_VALUE; }
    static void Close(Handle h) { FindClose(h); }
};
struct HKeyTraits {
    using Handle = HKEY;
    static Handle Invalid() { return nullptr; }
    static void Close(Handle h) { RegCloseKey(h); }
};

// CreateFileW results (invalid is INVALID_HANDLE_VALUE).
using UniqueFile = UniqueResource<FileHandleTraits>;
// Process, thread, event and pipe handles (invalid is null).
using UniqueHandle = UniqueResource<KernelHandleTraits>;
using UniqueFindHandle = UniqueResource<FindHandleTraits>;
using UniqueHKey = UniqueResource<HKeyTraits>;

// Runs a clean-up action when the scope is left.
template <class F> class ScopeExit {
public:
    explicit ScopeExit(F f) : f_(std::move(f)) {}
    ScopeExit(const ScopeExit&) = delete;
    ScopeExit& operator=(const ScopeExit&) = delete;
    ~ScopeExit() { f_(); }

private:
    F f_;
};
