#include "Common/Base/HRes.h"

#include <algorithm>

#include "Platform/Errors.h"
#include "Platform/Process.h"

namespace Harbor {

void HRES::Report(ErrorObject errorObject) noexcept {
    void* captured[std::tuple_size_v<Frames>] = {};
    Platform::RtlCaptureStackBackTrace(framesToSkip_, static_cast<Platform::DWORD>(frames_.size()), captured, nullptr);
    std::copy(std::begin(captured), std::end(captured), frames_.begin());
    Platform::IErrorInfo** const slot = errorInfo_.Address();
    if (errorObject == ErrorObject::Take) Platform::GetErrorInfo(0, slot);
}

HRESULT HRES::LastErrorCode() noexcept {
    return HResultFromWin32(Platform::GetLastError());
}

}  // namespace Harbor
