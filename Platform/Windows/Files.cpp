#include "Platform/Files.h"

#include "Native.h"

namespace Platform {

using Windows::As;
using Windows::Layer;
using Windows::Native;

HANDLE CreateFileW(const WideChar* path, DWORD access, DWORD sharing, void* security, DWORD disposition,
                   DWORD attributes, HANDLE templateFile) noexcept {
    return Layer(::CreateFileW(Native(path), access, sharing, static_cast<::SECURITY_ATTRIBUTES*>(security),
                               disposition, attributes, Native(templateFile)));
}

BOOL WriteFile(HANDLE file, const void* data, DWORD size, DWORD* written, void* overlapped) noexcept {
    return ::WriteFile(Native(file), data, size, Native(written), static_cast<::OVERLAPPED*>(overlapped));
}

DWORD GetFileSize(HANDLE file, DWORD* high) noexcept {
    return ::GetFileSize(Native(file), Native(high));
}

BOOL GetFileInformationByHandle(HANDLE file, BY_HANDLE_FILE_INFORMATION* information) noexcept {
    return ::GetFileInformationByHandle(Native(file), As<::BY_HANDLE_FILE_INFORMATION>(information));
}

BOOL DuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, HANDLE* target, DWORD access,
                     BOOL inherit, DWORD options) noexcept {
    return ::DuplicateHandle(Native(sourceProcess), Native(source), Native(targetProcess), Native(target), access,
                             inherit, options);
}

BOOL CloseHandle(HANDLE handle) noexcept {
    return ::CloseHandle(Native(handle));
}

DWORD GetFileAttributesW(const WideChar* path) noexcept {
    return ::GetFileAttributesW(Native(path));
}

BOOL CreateDirectoryW(const WideChar* path, void* security) noexcept {
    return ::CreateDirectoryW(Native(path), static_cast<::SECURITY_ATTRIBUTES*>(security));
}

}  // namespace Platform
