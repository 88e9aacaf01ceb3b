// The exception that reports a failed call to the code of a client, a host or a service.
//
//     Harbor::ThrowIfFailed(subscription->Start(), "Start");
//
// A failure is then reported as "Start: 0x80004005 Unspecified error [0x00007F0A1C2B3D4E,0x00007F0A1C2B4F60]".
//
// An exception must not leave a function that another component calls. CodeOf turns it into a result code.
#pragma once

#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Harbor/ErrorText.h"
#include "Platform/Errors.h"

namespace Harbor {

class Failure : public std::runtime_error {
public:
    // `text` is in UTF-8.
    Failure(HRESULT code, const std::string& text) : std::runtime_error(text), code_(code) {}

    [[nodiscard]] HRESULT Code() const noexcept { return code_; }

private:
    HRESULT code_;
};

// Throws a Failure if `code`, the result of `call`, is a failure. Its text is that of the call and the one that the
// callee left in the thread's error object, which is taken out; without one it is ErrorText(code).
inline void ThrowIfFailed(HRESULT code, std::string_view call) {
    if (Failed(code)) [[unlikely]]
        throw Failure(code, std::string(call) + ": " + TakeErrorText(code));
}

// Throws a Failure with the thread's last error if `failed` is true, for the functions of the platform layer that set
// it. A failure without a last error is E_FAIL.
inline void ThrowLastErrorIf(bool failed, std::string_view call) {
    if (!failed) [[likely]]
        return;
    const Platform::DWORD error = Platform::GetLastError();
    const HRESULT code = error != 0 ? HResultFromWin32(error) : E_FAIL;
    throw Failure(code, std::string(call) + ": " + ErrorText(code));
}

// Calls `body`, which returns an HRESULT, and returns its result. Returns the code of a Failure that leaves it,
// E_OUTOFMEMORY for std::bad_alloc, and E_UNEXPECTED for any other exception. The text of an exception is lost.
template <class Body>
[[nodiscard]] HRESULT CodeOf(Body&& body) noexcept {
    try {
        return body();
    } catch (const Failure& failure) {
        return failure.Code();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace Harbor
