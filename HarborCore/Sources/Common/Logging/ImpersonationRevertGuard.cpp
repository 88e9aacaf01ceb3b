#include "Common/Logging/ImpersonationRevertGuard.h"

#include <cstdlib>

#include "Common/Logging/DebugOutput.h"
#include "Harbor/ResultCodes.h"
#include "Platform/Errors.h"
#include "Platform/Files.h"
#include "Platform/Process.h"

namespace Harbor {
namespace {

HRESULT LastFailure() noexcept {
    return HResultFromWin32(Platform::GetLastError());
}

}  // namespace

ImpersonationRevertGuard::ImpersonationRevertGuard(bool active) {
    if (!active) return;
    Platform::HANDLE token = nullptr;
    if (!Platform::OpenThreadToken(Platform::GetCurrentThread(), Platform::TOKEN_IMPERSONATE, Platform::TRUE, &token)) {
        if (Platform::GetLastError() != Platform::ERROR_NO_TOKEN) {
            WriteDebugOutput(u"ImpersonationRevertGuard: cannot get current thread token (error: 0x%08x)\n",
                             LastFailure());
        }
        return;
    }
    if (!Platform::SetThreadToken(nullptr, nullptr)) {
        WriteDebugOutput(u"ImpersonationRevertGuard: cannot revert thread token (error: 0x%08x)\n", LastFailure());
        Platform::CloseHandle(token);
        return;
    }
    token_ = token;
}

ImpersonationRevertGuard::~ImpersonationRevertGuard() {
    if (token_ == nullptr) return;
    if (!Platform::SetThreadToken(nullptr, token_)) {
        WriteDebugOutput(u"ImpersonationRevertGuard: cannot restore token back (error: 0x%08x)\n", LastFailure());
        std::abort();
    }
    Platform::CloseHandle(token_);
}

}  // namespace Harbor
