// Owning handles of platform objects and of the node store. Each kind of handle is one alias, which names the function
// that closes it:
//
//     using ModuleHandle = OwnedHandle<Platform::HMODULE, &Platform::FreeLibrary>;
//
// An OwnedHandle is a std::unique_ptr: it closes its handle at the end of its scope, cannot be copied, and is empty
// when the handle is null. The result of the closing function is ignored.
#pragma once

#include <memory>

#include "Platform/Files.h"

namespace Harbor {

template <class Handle, auto CloseFunction>
struct HandleCloser {
    using pointer = Handle;
    void operator()(Handle handle) const noexcept { CloseFunction(handle); }
};

template <class Handle, auto CloseFunction>
using OwnedHandle = std::unique_ptr<Handle, HandleCloser<Handle, CloseFunction>>;

// A file or a thread's token. CreateFileW reports a failure as INVALID_HANDLE_VALUE, which must not be stored here.
using SystemHandle = OwnedHandle<Platform::HANDLE, &Platform::CloseHandle>;

}  // namespace Harbor
