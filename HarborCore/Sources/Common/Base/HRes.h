// The result of an operation, and the exception that reports a failure.
//
// A call that returns an HRESULT is usually checked by `ThrowIfFailed(SomeCall());`. A failed code is thrown as HRX.
// The HRX carries the text that the callee left in the thread's error object, the address of this statement and the
// address in its caller. A success costs one test.
//
// | Form                                        | reads the thread's error object | throws on failure |
// |---------------------------------------------|---------------------------------|-------------------|
// | HRES(code), hres = code                     | yes                             | yes               |
// | HRES::Unchecked(code)                       | yes                             | no                |
// | HRES::FromBool(result), hres = bool(result) | no                              | yes               |
// | HRES::FromBoolUnchecked(result)             | no                              | no                |
// | HRES::FromWin32(error)                      | no                              | yes               |
// | HRES::FromWin32Unchecked(error)             | no                              | no                |
//
// Platform::BOOL is the same type as HRESULT. Therefore the boolean of a platform function must be passed to FromBool
// or converted to bool. If it were assigned directly, it would be treated as a code.
#pragma once

#include <array>
#include <concepts>
#include <new>
#include <utility>

#include "Common/Base/WideStream.h"
#include "Harbor/ComponentPtr.h"
#include "Platform/ErrorObjects.h"

namespace Harbor {

// The statement that reported a failure and its caller; null if not captured.
using Frames = std::array<const void*, 2>;

class HRES {
public:
    HRES() noexcept = default;

    // Not explicit, so that the result of a call can initialise an HRES.
    template <std::same_as<HRESULT> Number>
    PLATFORM_FORCEINLINE HRES(Number code) {
        *this = code;
    }
    template <std::same_as<HRESULT> Number>
    PLATFORM_FORCEINLINE HRES& operator=(Number code);
    template <std::same_as<bool> Result>
    PLATFORM_FORCEINLINE HRES& operator=(Result result);

    PLATFORM_FORCEINLINE static HRES Unchecked(HRESULT code) {
        HRES result;
        result.SetCode(code, ErrorObject::Take);
        return result;
    }
    // The result of a platform function. False means that it failed with the thread's last error.
    PLATFORM_FORCEINLINE static HRES FromBool(Platform::BOOL result);
    PLATFORM_FORCEINLINE static HRES FromBoolUnchecked(Platform::BOOL result) {
        HRES checked;
        checked.SetCode(result != 0 ? S_OK : LastErrorCode(), ErrorObject::Leave);
        return checked;
    }
    // A system error code. 0 means success.
    PLATFORM_FORCEINLINE static HRES FromWin32(std::uint32_t error);
    PLATFORM_FORCEINLINE static HRES FromWin32Unchecked(std::uint32_t error) {
        HRES result;
        result.SetCode(HResultFromWin32(error), ErrorObject::Leave);
        return result;
    }

    // The code of the thread's last error.
    static HRESULT LastErrorCode() noexcept;

    HRESULT Code() const noexcept { return code_; }
    bool Failed() const noexcept { return Harbor::Failed(code_); }
    bool Succeeded() const noexcept { return Harbor::Succeeded(code_); }
    PLATFORM_FORCEINLINE void ThrowIfFailed() const;

    const ComponentPtr<Platform::IErrorInfo>& ErrorInfo() const noexcept { return errorInfo_; }
    const Frames& CodeAddresses() const noexcept { return frames_; }

    // Returns the text of the failure: "0x80070490 Element not found [0x...,0x...]". Defined in Failures.
    WideString ToText() const;
    // Stores the text of the failure in the thread's error object, from which the caller of the component reads it.
    // Returns the code. The second form takes the text from a caller that has needed it already. Defined in Failures.
    HRESULT PublishErrorInfo() const;
    HRESULT PublishErrorInfo(const WideString& text) const;

protected:
    enum class ErrorObject { Take, Leave };

    // Every form calls this. Report captures the addresses and must be exactly one call below the statement that made
    // the HRES; so this function and the forms above are always inlined.
    PLATFORM_FORCEINLINE void SetCode(HRESULT code, ErrorObject errorObject) {
        code_ = code;
        if (Harbor::Failed(code)) [[unlikely]] {
            Report(errorObject);
        } else if (errorInfo_) {
            errorInfo_.Reset();
        }
    }

private:
    PLATFORM_NOINLINE void Report(ErrorObject errorObject) noexcept;

    HRESULT code_ = S_OK;
    std::uint32_t framesToSkip_ = 1;  // the frame of Report
    ComponentPtr<Platform::IErrorInfo> errorInfo_;
    Frames frames_{};
};

// The only exception type that this framework throws itself, and the only one that a method edge catches.
class HRX : public HRES {
public:
    explicit HRX(const HRES& failure) noexcept : HRES(failure) {}

    // Throws an HRX with `code`, or with E_FAIL if `code` is a success. Leaves the thread's error object unchanged.
    [[noreturn]] PLATFORM_FORCEINLINE static void Throw(HRESULT code) { throw HRX(code, ErrorObject::Leave); }

private:
    // Builds the exception in its place. A local object would have to be destroyed by the unwinding, which costs as
    // much as another frame.
    PLATFORM_FORCEINLINE HRX(HRESULT code, ErrorObject errorObject) {
        SetCode(Harbor::Failed(code) ? code : E_FAIL, errorObject);
    }
};

[[noreturn]] PLATFORM_FORCEINLINE void ThrowError(HRESULT code) {
    HRX::Throw(code);
}

// Throws a failed code as HRX, with the text that the callee left in the thread's error object.
PLATFORM_FORCEINLINE void ThrowIfFailed(HRESULT code) {
    const HRES checked(code);
}

// Throws HRX with the code of the thread's last error if `result` is false, or with E_FAIL if there is no last error: a
// function that has failed must not pass for one that has succeeded.
PLATFORM_FORCEINLINE void ThrowLastErrorIfFalse(bool result) {
    if (!result) [[unlikely]]
        ThrowError(HRES::LastErrorCode());
}

// Throws HRX with the code of a system error other than 0.
PLATFORM_FORCEINLINE void ThrowIfWin32Error(std::uint32_t error) {
    const HRES checked = HRES::FromWin32(error);
}

// Calls `body` and returns its result. Throws HRX with E_OUTOFMEMORY if `body` throws std::bad_alloc.
template <class Body>
PLATFORM_FORCEINLINE decltype(auto) ThrowIfOutOfMemory(Body&& body) {
    try {
        return std::forward<Body>(body)();
    } catch (const std::bad_alloc&) {
        ThrowError(E_OUTOFMEMORY);
    }
}

// Returns another interface of the object. Throws HRX with the code of QueryTo if that fails.
template <class Other, class I>
[[nodiscard]] PLATFORM_FORCEINLINE ComponentPtr<Other> QueryOrThrow(const ComponentPtr<I>& pointer) {
    ComponentPtr<Other> result;
    ThrowIfFailed(pointer.QueryTo(result));
    return result;
}

PLATFORM_FORCEINLINE void HRES::ThrowIfFailed() const {
    if (Failed()) [[unlikely]]
        throw HRX(*this);
}

template <std::same_as<HRESULT> Number>
PLATFORM_FORCEINLINE HRES& HRES::operator=(Number code) {
    SetCode(code, ErrorObject::Take);
    ThrowIfFailed();
    return *this;
}

template <std::same_as<bool> Result>
PLATFORM_FORCEINLINE HRES& HRES::operator=(Result result) {
    SetCode(result ? S_OK : LastErrorCode(), ErrorObject::Leave);
    ThrowIfFailed();
    return *this;
}

PLATFORM_FORCEINLINE HRES HRES::FromBool(Platform::BOOL result) {
    HRES checked;
    checked.SetCode(result != 0 ? S_OK : LastErrorCode(), ErrorObject::Leave);
    checked.ThrowIfFailed();
    return checked;
}

PLATFORM_FORCEINLINE HRES HRES::FromWin32(std::uint32_t error) {
    HRES checked;
    checked.SetCode(HResultFromWin32(error), ErrorObject::Leave);
    checked.ThrowIfFailed();
    return checked;
}

// Inserts ToText().
WideStream& operator<<(WideStream& stream, const HRES& result);

}  // namespace Harbor
