// Calls a neighbour whose function may throw although its contract returns a code.
#pragma once

#include <new>

#include "Common/Base/HRes.h"
#include "Platform/ErrorObjects.h"

namespace Harbor {

// Returns the code of the call. An exception becomes a code: HRX becomes its own code and is stored in the thread's
// error object; std::bad_alloc becomes E_OUTOFMEMORY and any other exception E_UNEXPECTED. These two clear the error
// object, so that it does not describe an earlier failure.
template <class Call>
[[nodiscard]] HRESULT CodeOfCall(Call&& call) noexcept {
    try {
        return call();
    } catch (const HRX& failure) {
        return failure.PublishErrorInfo();
    } catch (const std::bad_alloc&) {
        Platform::SetErrorInfo(0, nullptr);
        return E_OUTOFMEMORY;
    } catch (...) {
        Platform::SetErrorInfo(0, nullptr);
        return E_UNEXPECTED;
    }
}

}  // namespace Harbor
