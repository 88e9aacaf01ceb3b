// Owning handles. Each kind of handle is one alias, which names the function that closes it:
//
//     using NodeHandle = Harbor::OwnedHandle<AcnHandle, &AcnCloseNodeHandle>;
//
// An OwnedHandle is a std::unique_ptr: it closes its handle at the end of its scope, cannot be copied, and is empty
// when the handle is null. The result of the closing function is ignored.
#pragma once

#include <memory>

namespace Harbor {

template <class Handle, auto CloseFunction>
struct HandleCloser {
    using pointer = Handle;
    void operator()(Handle handle) const noexcept { CloseFunction(handle); }
};

template <class Handle, auto CloseFunction>
using OwnedHandle = std::unique_ptr<Handle, HandleCloser<Handle, CloseFunction>>;

}  // namespace Harbor
