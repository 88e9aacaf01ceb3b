#include "Common/Logging/ImpersonationRevertGuard.h"

#include <cstdlib>

#include "Common/Logging/DebugOutput.h"
#include "Harbor/ResultCodes.h"
#include "Platform/Errors.h"
#include "Platform/Process.h"

namespace Harbor {
namespace {

HRESULT LastFailure() noexcept {
    return HResultFromWin32(Platform::GetLastError());
}

}  // namespace

ImpersonationRevertGuard::ImpersonationRevertGuard(bool active) {
    if (!active) return;
    Platform::HANDLE opened = nullptr;
    if (!Platform::OpenThreadToken(Platform::GetCurrentThread(), Platform::TOKEN_IMPERSONATE, Platform::TRUE,
                                   &opened)) {
        if (Platform::GetLastError() != Platform::ERROR_NO_TOKEN) {
            WriteDebugOutput(u"ImpersonationRevertGuard: cannot get current thread token (error: 0x%08x)\n",
                             LastFailure());
        }
        return;
    }
    SystemHandle token(opened);
    if (!Platform::SetThreadToken(nullptr, nullptr)) {
        WriteDebugOutput(u"ImpersonationRevertGuard: cannot revert thread token (error: 0x%08x)\n", LastFailure());
        return;
    }
    token_ = std::move(token);
}

ImpersonationRevertGuard::~ImpersonationRevertGuard() {
    if (!token_) return;
    if (!Platform::SetThreadToken(nullptr, token_.get())) {
        WriteDebugOutput(u"ImpersonationRevertGuard: cannot restore token back (error: 0x%08x)\n", LastFailure());
        std::abort();
    }
}

}  // namespace Harbor
