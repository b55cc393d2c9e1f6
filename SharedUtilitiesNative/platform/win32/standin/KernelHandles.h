#pragma once

#include <memory>

#include <Platform/Win32.h>

/// What a HANDLE leads to, whatever its kind. CloseHandle destroys it.
struct KernelObject
{
    KernelObject() = default;
    KernelObject(const KernelObject&) = delete;
    KernelObject& operator=(const KernelObject&) = delete;
    virtual ~KernelObject() = default;
};

/// Gives the object into the hands of whoever has the handle.
inline HANDLE HandleOf(std::unique_ptr<KernelObject> object) noexcept
{
    return object.release();
}

/// The object behind a handle; null for no handle and for one of another kind.
template<typename Object>
Object* ObjectBehind(HANDLE handle) noexcept
{
    return handle == INVALID_HANDLE_VALUE ? nullptr : dynamic_cast<Object*>(static_cast<KernelObject*>(handle));
}
