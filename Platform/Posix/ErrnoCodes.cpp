#include "ErrnoCodes.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

#include "Platform/Errors.h"

namespace Platform::Posix {

namespace {

struct ErrnoCode {
    int errorNumber;
    DWORD code;
};

constexpr ErrnoCode ErrnoCodes[] = {
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    {EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    {EACCES, ERROR_ACCESS_DENIED},
    {EPERM, ERROR_ACCESS_DENIED},
    {EROFS, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {EBADF, ERROR_INVALID_HANDLE},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {ETXTBSY, ERROR_SHARING_VIOLATION},
    {EWOULDBLOCK, ERROR_SHARING_VIOLATION},  // a lock or a lease of another process
    {ETIMEDOUT, ERROR_TIMEOUT},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {EPIPE, ERROR_BROKEN_PIPE},
    {ENOSPC, ERROR_DISK_FULL},
    {EDQUOT, ERROR_DISK_FULL},
    {ENOTEMPTY, ERROR_DIR_NOT_EMPTY},
    {EEXIST, ERROR_ALREADY_EXISTS},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    {EFBIG, ERROR_FILE_TOO_LARGE},
    {EILSEQ, ERROR_NO_UNICODE_TRANSLATION},
    {EIO, ERROR_IO_DEVICE},
    {ELOOP, ERROR_CANT_RESOLVE_FILENAME},
};

}  // namespace

DWORD Win32FromErrno(int errorNumber) noexcept {
    const auto* const found = std::ranges::find(ErrnoCodes, errorNumber, &ErrnoCode::errorNumber);
    return found != std::end(ErrnoCodes) ? found->code : ERROR_GEN_FAILURE;
}

}  // namespace Platform::Posix
