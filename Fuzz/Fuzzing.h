// Shared by the fuzzers: the check of a property, the input as text, and files in memory.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "Common/Base/Text.h"
#include "NodeFabric/Authoring.h"

// Ends the process if a property does not hold. The fuzzer then keeps the input.
#define REQUIRE(condition)                                                                     \
    do {                                                                                       \
        if (!(condition)) {                                                                    \
            std::fprintf(stderr, "%s:%d: doesn't hold: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                      \
        }                                                                                      \
    } while (false)

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace Fuzzing {

inline std::string_view AsBytes(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// Takes the text up to the end of the line, and the line end.
inline Harbor::WideString TakeLine(std::u16string_view& text) {
    const std::u16string_view line = text.substr(0, text.find(u'\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return Harbor::WideString(line);
}

inline Harbor::WideString WithoutLineEnds(std::u16string_view text) {
    Harbor::WideString line(text);
    std::erase_if(line, [](char16_t c) { return c == u'\r' || c == u'\n'; });
    return line;
}

// The bytes of a text file: UTF-8 and UTF-16 little-endian, both with their marks.
inline std::string Utf8File(std::u16string_view text) {
    return "\xEF\xBB\xBF" + Harbor::ToUtf8(text);
}
inline std::string Utf16File(std::u16string_view text) {
    std::string bytes = "\xFF\xFE";
    return bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
}

// A file that is removed at the end of its scope.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view bytes) : descriptor_(::memfd_create("input", MFD_CLOEXEC)) {
        REQUIRE(::write(descriptor_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(descriptor_); }

    std::string Path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }
    Harbor::WideString WidePath() const { return Harbor::FromUtf8(Path()); }

private:
    const int descriptor_;
};

inline std::uint64_t OpenNodeHandles() {
    std::uint64_t count = 0;
    REQUIRE(AcnGetOpenHandleCount(&count) == 0);
    return count;
}

}  // namespace Fuzzing
