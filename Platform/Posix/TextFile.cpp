#include "TextFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "ErrnoCodes.h"
#include "Paths.h"
#include "Platform/Errors.h"
#include "TextEncoding.h"

namespace Platform::Posix {

namespace {

class OpenFile {
public:
    // Does not block: if the path is a pipe without a writer, that is an empty file, not a wait. Regular files ignore
    // the flag.
    explicit OpenFile(const std::string& nativePath) noexcept
        : descriptor_(::open(nativePath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    ~OpenFile() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    // Returns false with errno set on failure.
    bool ReadAll(std::string& bytes) const {
        if (descriptor_ < 0) return false;
        char block[16384];
        for (;;) {
            const ssize_t count = ::read(descriptor_, block, sizeof block);
            if (count == 0) return true;
            if (count > 0) {
                bytes.append(block, static_cast<std::size_t>(count));
            } else if (errno != EINTR) {
                return false;
            }
        }
    }

private:
    const int descriptor_;
};

}  // namespace

bool ReadTextFile(const std::string& nativePath, std::u16string& text, int& errorNumber) {
    const OpenFile file(nativePath);
    std::string bytes;
    if (!file.ReadAll(bytes)) {
        errorNumber = errno;
        return false;
    }
    text = Common::DecodeText(bytes);
    return true;
}

}  // namespace Platform::Posix

namespace Platform::Common {

DWORD ReadTextFile(const WideChar* path, WideString& text) {
    int errorNumber = 0;
    return Posix::ReadTextFile(Posix::NativePath(path), text, errorNumber) ? ERROR_SUCCESS
                                                                           : Posix::Win32FromErrno(errorNumber);
}

}  // namespace Platform::Common
