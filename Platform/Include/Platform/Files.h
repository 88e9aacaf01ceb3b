// Files and directories. Both "\" and "/" separate the elements of a path; a drive letter has no meaning on a system
// without drives. Failures leave the code that the same failure has on Windows in GetLastError.
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

// What names a file among all files: a deleted file's numbers are not given again at once.
struct BY_HANDLE_FILE_INFORMATION {
    DWORD dwVolumeSerialNumber;
    DWORD nFileIndexHigh;
    DWORD nFileIndexLow;
};

// Opens a file for appending (access FILE_APPEND_DATA), made if it isn't there (OPEN_ALWAYS); other accesses and
// dispositions are ERROR_INVALID_PARAMETER. Sharing nothing keeps others out as long as the handle lives, sharing
// everything stands back from such a holder; a conflict is ERROR_SHARING_VIOLATION. Not inherited by child processes.
// Gives INVALID_HANDLE_VALUE on failure. The caller closes the handle.
PLATFORM_EXPORT HANDLE CreateFileW(const WideChar* path, DWORD access, DWORD sharing, void* security, DWORD disposition,
                                   DWORD attributes, HANDLE templateFile) noexcept;

// Appends the bytes in one piece: writers of other threads and processes don't come between. A process with a limit on
// the size of its files (RLIMIT_FSIZE) must ignore SIGXFSZ, which the system sends at the limit.
PLATFORM_EXPORT BOOL WriteFile(HANDLE file, const void* data, DWORD size, DWORD* written, void* overlapped) noexcept;

// Gives the low half of the size, and stores the high half. INVALID_FILE_SIZE with a last error is a failure.
PLATFORM_EXPORT DWORD GetFileSize(HANDLE file, DWORD* high) noexcept;
PLATFORM_EXPORT BOOL GetFileInformationByHandle(HANDLE file, BY_HANDLE_FILE_INFORMATION* information) noexcept;

// A second handle of the same file within this process. Each of the two is closed by itself.
PLATFORM_EXPORT BOOL DuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, HANDLE* target,
                                     DWORD access, BOOL inherit, DWORD options) noexcept;
PLATFORM_EXPORT BOOL CloseHandle(HANDLE handle) noexcept;

PLATFORM_EXPORT DWORD GetFileAttributesW(const WideChar* path) noexcept;
// Makes one directory; its parent must be there. ERROR_ALREADY_EXISTS if the name is taken.
PLATFORM_EXPORT BOOL CreateDirectoryW(const WideChar* path, void* security) noexcept;

// Joins two paths with one "\", resolves "." and "..", and lets an absolute second part replace the first. `result`
// has room for 260 characters or for both lengths and 2 more, whichever is larger. Gives `result`, or null if the
// text doesn't fit a path.
PLATFORM_EXPORT WideChar* PathCombineW(WideChar* result, const WideChar* base, const WideChar* rest) noexcept;

}  // namespace Platform
