#include "Platform/Files.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <memory>
#include <string>

#include "Descriptors.h"
#include "ErrnoFailure.h"
#include "Handles.h"
#include "Paths.h"

namespace Platform {

using namespace Posix;

namespace {

// An open file.
struct File final : HandleOpaque {
    static constexpr Kind ItsKind = Kind::File;

    File() noexcept : HandleOpaque(ItsKind) {}
    ~File() override {
        if (descriptor >= 0) close(descriptor);
    }

    int descriptor = -1;
    bool isPipe = false;
};

constexpr DWORD ShareNothing = 0;
constexpr DWORD ShareEverything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr mode_t NewFileMode = 0666;
constexpr mode_t NewDirectoryMode = 0777;

// A process may have been started with its standard streams closed. The file must not become one of them: it would
// receive everything that the process prints.
int MoveBehindStandardStreams(int descriptor) noexcept {
    if (descriptor < 0 || descriptor > STDERR_FILENO) return descriptor;
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int error = errno;
    close(descriptor);
    errno = error;
    return moved;
}

// Does not block: if the path is a pipe without a reader, that is a failure, not a wait. Regular files ignore the flag.
int OpenForAppending(const char* path) noexcept {
    constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK;
    return MoveBehindStandardStreams(RetryInterrupted([&] { return open(path, flags, NewFileMode); }));
}

bool IsPipe(int descriptor) noexcept {
    struct stat status;
    return fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
}

// Returns false if another lock is in conflict or the lock is not available. A file that shares everything needs none
// on a file system without locks.
bool Lock(int descriptor, DWORD sharing) noexcept {
    const int operation = (sharing == ShareEverything ? LOCK_SH : LOCK_EX) | LOCK_NB;
    if (RetryInterrupted([&] { return flock(descriptor, operation); }) == 0) return true;
    return sharing == ShareEverything && errno != EWOULDBLOCK;
}

// A missing name is a missing file if its directory exists, otherwise a missing path.
DWORD MissingNameCode(const std::string& path) {
    const std::size_t nameEnd = path.find_last_not_of('/');
    if (nameEnd == std::string::npos) return ERROR_PATH_NOT_FOUND;
    const std::size_t separator = path.find_last_of('/', nameEnd);
    if (separator == std::string::npos) return ERROR_FILE_NOT_FOUND;
    struct stat status;
    const bool parentFound = stat(path.substr(0, separator + 1).c_str(), &status) == 0;
    return parentFound ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
}

std::uint64_t Mix(std::uint64_t seed, std::uint64_t value) noexcept {
    std::uint64_t mixed = (seed ^ value) + 0x9E3779B97F4A7C15;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
    return mixed ^ (mixed >> 31);
}

// The inode of a deleted file is reused at once. The birth time distinguishes the files, but with a resolution of
// milliseconds; the generation does so exactly. A file system may have both, either or none.
std::uint64_t FileIndex(int descriptor, const struct statx& status) noexcept {
    std::uint64_t index = Mix(0, status.stx_ino);
    if ((status.stx_mask & STATX_BTIME) != 0) {
        index = Mix(index, static_cast<std::uint64_t>(status.stx_btime.tv_sec));
        index = Mix(index, status.stx_btime.tv_nsec);
    }
    long generation = 0;  // as the request is declared, though most file systems store an int
    if (ioctl(descriptor, FS_IOC_GETVERSION, &generation) == 0) {
        index = Mix(index, static_cast<std::uint64_t>(generation));
    }
    return index;
}

// Both halves fit: the kernel has 12 bits of major and 20 bits of minor device number.
DWORD VolumeNumber(const struct statx& status) noexcept {
    return status.stx_dev_major << 20 | status.stx_dev_minor;
}

DWORD LowHalf(std::uint64_t value) noexcept {
    return static_cast<DWORD>(value);
}

DWORD HighHalf(std::uint64_t value) noexcept {
    return static_cast<DWORD>(value >> 32);
}

}  // namespace

HANDLE CreateFileW(const WideChar* path, DWORD access, DWORD sharing, void*, DWORD disposition, DWORD,
                   HANDLE) noexcept {
    if (access != FILE_APPEND_DATA || disposition != OPEN_ALWAYS) {
        return Fail(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
    }
    if (sharing != ShareEverything && sharing != ShareNothing) {
        return Fail(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
    }
    return OrOutOfMemory(INVALID_HANDLE_VALUE, [&] {
        const std::string nativePath = NativePath(path);
        auto file = std::make_unique<File>();
        file->descriptor = OpenForAppending(nativePath.c_str());
        if (file->descriptor < 0) {
            // A missing file would have been created, so the directory is missing.
            if (errno == ENOENT) return Fail(ERROR_PATH_NOT_FOUND, INVALID_HANDLE_VALUE);
            return FailByErrno(INVALID_HANDLE_VALUE);
        }
        if (!Lock(file->descriptor, sharing)) {
            if (errno == EWOULDBLOCK) return Fail(ERROR_SHARING_VIOLATION, INVALID_HANDLE_VALUE);
            return FailByErrno(INVALID_HANDLE_VALUE);
        }
        file->isPipe = IsPipe(file->descriptor);
        return HANDLE{file.release()};
    });
}

BOOL WriteFile(HANDLE handle, const void* data, DWORD size, DWORD* written, void* overlapped) noexcept {
    const auto* const file = ObjectOf<File>(handle);
    if (file == nullptr) return Fail(ERROR_INVALID_HANDLE, FALSE);
    if (written == nullptr || overlapped != nullptr) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    // Blocking signals costs two system calls. Regular files do without: each line of the log is such a write.
    const auto write = file->isPipe ? WriteWithoutSignals : WriteFully;
    *written = static_cast<DWORD>(write(file->descriptor, data, size));
    if (*written == size) return TRUE;
    return errno == 0 ? Fail(ERROR_WRITE_FAULT, FALSE) : FailByErrno(FALSE);
}

DWORD GetFileSize(HANDLE handle, DWORD* high) noexcept {
    const auto* const file = ObjectOf<File>(handle);
    if (file == nullptr) return Fail(ERROR_INVALID_HANDLE, INVALID_FILE_SIZE);
    struct stat status;
    if (fstat(file->descriptor, &status) != 0) return FailByErrno(INVALID_FILE_SIZE);
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (high != nullptr) *high = HighHalf(size);
    // Only the last error distinguishes this size from a failure.
    if (LowHalf(size) == INVALID_FILE_SIZE) SetLastError(ERROR_SUCCESS);
    return LowHalf(size);
}

BOOL GetFileInformationByHandle(HANDLE handle, BY_HANDLE_FILE_INFORMATION* information) noexcept {
    const auto* const file = ObjectOf<File>(handle);
    if (file == nullptr) return Fail(ERROR_INVALID_HANDLE, FALSE);
    if (information == nullptr) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    struct statx status;
    if (statx(file->descriptor, "", AT_EMPTY_PATH, STATX_INO | STATX_BTIME, &status) != 0) return FailByErrno(FALSE);
    const std::uint64_t index = FileIndex(file->descriptor, status);
    *information = {.dwVolumeSerialNumber = VolumeNumber(status),
                    .nFileIndexHigh = HighHalf(index),
                    .nFileIndexLow = LowHalf(index)};
    return TRUE;
}

BOOL DuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, HANDLE* target, DWORD, BOOL inherit,
                     DWORD options) noexcept {
    const HANDLE process = GetCurrentProcess();
    if (sourceProcess != process || targetProcess != process || ObjectOf<File>(source) == nullptr) {
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    }
    if (target == nullptr || inherit != FALSE || options != DUPLICATE_SAME_ACCESS) {
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    }
    source->references.fetch_add(1, std::memory_order_relaxed);
    *target = source;
    return TRUE;
}

BOOL CloseHandle(HANDLE handle) noexcept {
    if (IsPseudoHandle(handle)) return TRUE;
    if (handle == nullptr) return Fail(ERROR_INVALID_HANDLE, FALSE);
    if (handle->references.fetch_sub(1, std::memory_order_acq_rel) == 1) std::unique_ptr<HandleOpaque>{handle}.reset();
    return TRUE;
}

DWORD GetFileAttributesW(const WideChar* path) noexcept {
    return OrOutOfMemory(INVALID_FILE_ATTRIBUTES, [&] {
        const std::string nativePath = NativePath(path);
        struct stat status;
        if (stat(nativePath.c_str(), &status) == 0) {
            return S_ISDIR(status.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
        }
        if (errno == ENOENT) return Fail(MissingNameCode(nativePath), INVALID_FILE_ATTRIBUTES);
        return FailByErrno(INVALID_FILE_ATTRIBUTES);
    });
}

BOOL CreateDirectoryW(const WideChar* path, void*) noexcept {
    return OrOutOfMemory(FALSE, [&] {
        if (mkdir(NativePath(path).c_str(), NewDirectoryMode) == 0) return TRUE;
        // Only a parent of the new directory can be missing.
        return errno == ENOENT ? Fail(ERROR_PATH_NOT_FOUND, FALSE) : FailByErrno(FALSE);
    });
}

}  // namespace Platform
