#include "Common/Base/Thread.h"

#include "Platform/Errors.h"
#include "Platform/Files.h"

namespace Harbor {

HRESULT Thread::Start(Platform::LPTHREAD_START_ROUTINE routine, void* argument) noexcept {
    handle_ = Platform::CreateThread(nullptr, 0, routine, argument, 0, nullptr);
    if (handle_ != nullptr) return S_OK;
    const Platform::DWORD error = Platform::GetLastError();
    return error == Platform::ERROR_NOT_ENOUGH_MEMORY ? E_OUTOFMEMORY : HResultFromWin32(error);
}

void Thread::Join() noexcept {
    if (handle_ == nullptr) return;
    Platform::WaitForSingleObject(handle_, Platform::INFINITE);
    Detach();
}

void Thread::Detach() noexcept {
    if (const Platform::HANDLE handle = std::exchange(handle_, nullptr); handle != nullptr) {
        Platform::CloseHandle(handle);
    }
}

}  // namespace Harbor
