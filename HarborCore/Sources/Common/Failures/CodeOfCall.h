// A call to a neighbour that may throw what it shouldn't.
#pragma once

#include <new>

#include "Common/Base/HRes.h"
#include "Platform/ErrorObjects.h"

namespace Harbor {

// The code of the call. An exception counts as a failure: HRX as its code, others as E_OUTOFMEMORY or E_UNEXPECTED,
// without the words that an earlier failure may have left on this thread.
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
