#include "TextFile.h"

#include <fcntl.h>

#include <cerrno>
#include <string_view>

#include "Descriptors.h"
#include "Utf.h"

namespace Platform::Posix {

namespace {

class OpenFile {
public:
    // Does not block: a pipe without a writer is an empty file, and a file that another process has leased is a failure
    // (EWOULDBLOCK), not a wait.
    explicit OpenFile(const std::string& nativePath) noexcept
        : descriptor_(RetryInterrupted([&] { return ::open(nativePath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); })) {
    }
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
            const ssize_t count = RetryInterrupted([&] { return ::read(descriptor_, block, sizeof block); });
            if (count <= 0) return count == 0;
            bytes.append(block, static_cast<std::size_t>(count));
        }
    }

private:
    const int descriptor_;
};

std::u16string DecodeUtf16LittleEndian(std::string_view bytes) {
    std::u16string text;
    text.reserve(bytes.size() / 2 + 1);
    for (; bytes.size() >= 2; bytes.remove_prefix(2)) {
        const unsigned low = static_cast<unsigned char>(bytes[0]);
        const unsigned high = static_cast<unsigned char>(bytes[1]);
        text.push_back(static_cast<char16_t>(high << 8 | low));
    }
    if (!bytes.empty()) text.push_back(ReplacementCharacter);
    return text;
}

std::u16string Decode(std::string_view bytes) {
    constexpr std::string_view utf8Mark = "\xEF\xBB\xBF", utf16Mark = "\xFF\xFE";
    if (bytes.starts_with(utf16Mark)) return DecodeUtf16LittleEndian(bytes.substr(utf16Mark.size()));
    if (bytes.starts_with(utf8Mark)) bytes.remove_prefix(utf8Mark.size());
    return ToWide(bytes);
}

}  // namespace

bool ReadTextFile(const std::string& nativePath, std::u16string& text, int& errorNumber) {
    const OpenFile file(nativePath);
    std::string bytes;
    if (!file.ReadAll(bytes)) {
        errorNumber = errno;
        return false;
    }
    text = Decode(bytes);
    return true;
}

}  // namespace Platform::Posix
