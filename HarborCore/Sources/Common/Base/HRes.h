// The result of an operation, and the exception that a failed one becomes.
//
// The usual check is `ThrowIfFailed(SomeCall());` for a call that returns an HRESULT: a failed code is thrown as HRX,
// with the text that the callee left in the thread's error object, the address of this statement and the address in its
// caller. A success costs one test.
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
// A platform function's boolean has the same type as a result code here: hand it over by FromBool, or as a real bool.
#pragma once

#include <array>
#include <concepts>
#include <new>
#include <utility>

#include "Common/Base/WideStream.h"
#include "Harbor/ComponentPtr.h"
#include "Platform/ErrorObjects.h"

namespace Harbor {

using Frames = std::array<const void*, 2>;  // the place that reported a failure and its caller; null if not captured

class HRES {
public:
    HRES() noexcept = default;

    // Not explicit: a call's result becomes an HRES by assignment.
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
    // False means the failure that the thread's last error tells.
    PLATFORM_FORCEINLINE static HRES FromBool(Platform::BOOL result);
    PLATFORM_FORCEINLINE static HRES FromBoolUnchecked(Platform::BOOL result) {
        HRES checked;
        checked.SetCode(result != 0 ? S_OK : LastErrorCode(), ErrorObject::Leave);
        return checked;
    }
    // A code of the system, 0 being success.
    PLATFORM_FORCEINLINE static HRES FromWin32(std::uint32_t error);
    PLATFORM_FORCEINLINE static HRES FromWin32Unchecked(std::uint32_t error) {
        HRES result;
        result.SetCode(HResultFromWin32(error), ErrorObject::Leave);
        return result;
    }

    HRESULT Code() const noexcept { return code_; }
    bool Failed() const noexcept { return Harbor::Failed(code_); }
    bool Succeeded() const noexcept { return Harbor::Succeeded(code_); }
    PLATFORM_FORCEINLINE void ThrowIfFailed() const;

    const ComponentPtr<Platform::IErrorInfo>& ErrorInfo() const noexcept { return errorInfo_; }
    const Frames& CodeAddresses() const noexcept { return frames_; }

    // The failure's text: "0x80070490 Element not found [0x...,0x...]". Defined with the texts of codes.
    WideString ToText() const;
    // Leaves the failure's text in the thread's error object, for the caller of a component. Gives the code.
    HRESULT PublishErrorInfo() const;

protected:
    enum class ErrorObject { Take, Leave };

    // Every form ends here. The capture happens in Report, one call below the statement that made the HRES, so this
    // and the forms above are always inlined.
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
    static HRESULT LastErrorCode() noexcept;

    HRESULT code_ = S_OK;
    std::uint32_t framesToSkip_ = 1;  // Report itself
    ComponentPtr<Platform::IErrorInfo> errorInfo_;
    Frames frames_{};
};

// The one exception that this framework throws on its own, and the one that a method edge catches.
class HRX : public HRES {
public:
    explicit HRX(const HRES& failure) noexcept : HRES(failure) {}

    // Throws `code`, or E_FAIL if it is no failure. The thread's error object stays as it is.
    [[noreturn]] PLATFORM_FORCEINLINE static void Throw(HRESULT code) {
        HRX failure;
        failure.SetCode(Harbor::Failed(code) ? code : E_FAIL, ErrorObject::Leave);
        throw failure;
    }

private:
    HRX() noexcept = default;
};

[[noreturn]] PLATFORM_FORCEINLINE void ThrowError(HRESULT code) {
    HRX::Throw(code);
}

// The usual check of a call: a failed code is thrown as HRX, with the text that the callee left in the thread's error
// object.
PLATFORM_FORCEINLINE void ThrowIfFailed(HRESULT code) {
    const HRES checked(code);
}

// A false result is thrown as HRX with the code of the thread's last error.
PLATFORM_FORCEINLINE void ThrowLastErrorIfFalse(bool result) {
    const HRES checked = HRES::FromBool(result);
}

// A system code other than 0 is thrown as HRX.
PLATFORM_FORCEINLINE void ThrowIfWin32Error(std::uint32_t error) {
    const HRES checked = HRES::FromWin32(error);
}

// Calls `body` and returns its result. A std::bad_alloc that leaves it is thrown as HRX with E_OUTOFMEMORY.
template <class Body>
PLATFORM_FORCEINLINE decltype(auto) ThrowIfOutOfMemory(Body&& body) {
    try {
        return std::forward<Body>(body)();
    } catch (const std::bad_alloc&) {
        ThrowError(E_OUTOFMEMORY);
    }
}

// The object behind `pointer` by another interface. A failure of QueryTo is thrown as HRX.
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
