// Files and directories. Both "\" and "/" separate the elements of a path. On a system without drives a drive letter is
// ignored. A failure sets the last error to the code that the same failure has on Windows.
#pragma once

#include "Platform/Types.h"

namespace Platform {

inline constexpr DWORD FILE_APPEND_DATA = 4;
inline constexpr DWORD FILE_SHARE_READ = 1;
inline constexpr DWORD FILE_SHARE_WRITE = 2;
inline constexpr DWORD FILE_SHARE_DELETE = 4;
inline constexpr DWORD OPEN_ALWAYS = 4;
inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 16;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 128;
inline constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;
inline constexpr DWORD INVALID_FILE_SIZE = 0xFFFFFFFF;
inline constexpr DWORD DUPLICATE_SAME_ACCESS = 2;

// The volume and the index identify a file among all files. The numbers of a deleted file are not reused for a new
// file. On POSIX the other fields are 0.
struct BY_HANDLE_FILE_INFORMATION {
    DWORD dwFileAttributes = 0;
    DWORD ftCreationTime[2] = {}, ftLastAccessTime[2] = {}, ftLastWriteTime[2] = {};
    DWORD dwVolumeSerialNumber = 0;
    DWORD nFileSizeHigh = 0, nFileSizeLow = 0;
    DWORD nNumberOfLinks = 0;
    DWORD nFileIndexHigh = 0, nFileIndexLow = 0;
};
static_assert(sizeof(BY_HANDLE_FILE_INFORMATION) == 52);

// Opens a file for appending, and creates it if it does not exist. `access` must be FILE_APPEND_DATA and `disposition`
// OPEN_ALWAYS; otherwise the call fails with ERROR_INVALID_PARAMETER. `sharing` is 0 or all three FILE_SHARE flags:
// with 0 the file cannot be opened again by this function while the handle is open. A conflict fails with
// ERROR_SHARING_VIOLATION. Child processes do not inherit the handle. Returns INVALID_HANDLE_VALUE on failure. The
// caller must close the handle.
PLATFORM_API HANDLE CreateFileW(const WideChar* path, DWORD access, DWORD sharing, void* security, DWORD disposition,
                                DWORD attributes, HANDLE templateFile) noexcept;

// Appends the bytes in one piece: no bytes of other threads or processes are written between them. A process that
// limits the size of its files (RLIMIT_FSIZE) must ignore SIGXFSZ, which the system sends when the limit is reached.
PLATFORM_API BOOL WriteFile(HANDLE file, const void* data, DWORD size, DWORD* written, void* overlapped) noexcept;

// Returns the low half of the size and stores the high half in `*high`, unless that is null. INVALID_FILE_SIZE is a
// failure if the last error is not ERROR_SUCCESS, and otherwise a size.
PLATFORM_API DWORD GetFileSize(HANDLE file, DWORD* high) noexcept;
PLATFORM_API BOOL GetFileInformationByHandle(HANDLE file, BY_HANDLE_FILE_INFORMATION* information) noexcept;

// Creates a second handle of the same file in this process. Both handles must be closed.
PLATFORM_API BOOL DuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, HANDLE* target,
                                  DWORD access, BOOL inherit, DWORD options) noexcept;
PLATFORM_API BOOL CloseHandle(HANDLE handle) noexcept;

// Returns FILE_ATTRIBUTE_DIRECTORY or FILE_ATTRIBUTE_NORMAL, or INVALID_FILE_ATTRIBUTES on failure.
PLATFORM_API DWORD GetFileAttributesW(const WideChar* path) noexcept;
// Creates one directory. Fails with ERROR_PATH_NOT_FOUND if its parent does not exist, and with ERROR_ALREADY_EXISTS if
// the name is in use.
PLATFORM_API BOOL CreateDirectoryW(const WideChar* path, void* security) noexcept;

}  // namespace Platform
