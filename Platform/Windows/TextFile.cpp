#include <memory>
#include <string>

#include "TextEncoding.h"

#include "Native.h"

namespace Platform::Common {

namespace {

struct FileCloser {
    using pointer = ::HANDLE;
    void operator()(::HANDLE file) const noexcept { ::CloseHandle(file); }
};

}  // namespace

DWORD ReadTextFile(const WideChar* path, WideString& text) {
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const ::HANDLE handle = ::CreateFileW(Windows::Native(path), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return ::GetLastError();
    const std::unique_ptr<::HANDLE, FileCloser> file(handle);
    std::string bytes;
    for (char block[16384];;) {
        ::DWORD count = 0;
        if (!::ReadFile(handle, block, sizeof block, &count, nullptr)) return ::GetLastError();
        if (count == 0) break;
        bytes.append(block, count);
    }
    text = DecodeText(bytes);
    return ERROR_SUCCESS;
}

}  // namespace Platform::Common
