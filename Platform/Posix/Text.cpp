#include "Platform/Text.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <type_traits>

#include "ErrnoFailure.h"
#include "Platform/Errors.h"
#include "Utf.h"

namespace Platform {

namespace {

using Common::MalformedCharacter;

// The text of `length` units. For -1 it ends with its terminator and includes it.
template <typename Unit>
std::basic_string_view<Unit> SourceText(const Unit* text, int length) noexcept {
    using View = std::basic_string_view<Unit>;
    return length == -1 ? View(text, View(text).size() + 1) : View(text, static_cast<std::size_t>(length));
}

// Checks the arguments that both directions have.
bool AreArgumentsSound(DWORD codePage, const void* text, int length, const void* buffer, int size) noexcept {
    return codePage == CP_UTF8 && text != nullptr && length >= -1 && length != 0 && size >= 0 &&
           (size == 0 || (buffer != nullptr && buffer != text));
}

// Counts the units of the result and writes those that fit. With a size of 0 it only counts.
template <typename Unit>
class UnitSink {
public:
    UnitSink(Unit* buffer, int size) noexcept : buffer_(buffer), size_(static_cast<std::size_t>(size)) {}

    template <typename Units>
    void Append(const Units& encoded) noexcept {
        if (count_ + encoded.length <= size_) std::copy_n(encoded.units, encoded.length, buffer_ + count_);
        count_ += encoded.length;
    }
    // For characters that are one unit in either encoding.
    template <typename Source>
    void AppendAscii(std::basic_string_view<Source> run) noexcept {
        if (count_ + run.size() <= size_) std::copy(run.begin(), run.end(), buffer_ + count_);
        count_ += run.size();
    }
    [[nodiscard]] int Result() const noexcept {
        const std::size_t room = size_ != 0 ? size_ : static_cast<std::size_t>(std::numeric_limits<int>::max());
        return count_ <= room ? static_cast<int>(count_) : Posix::Fail(ERROR_INSUFFICIENT_BUFFER, 0);
    }

private:
    Unit* const buffer_;
    const std::size_t size_;
    std::size_t count_ = 0;
};

// Removes the ASCII characters from the front and returns them. Most text is ASCII, and it needs no decoding.
template <typename Unit>
std::basic_string_view<Unit> TakeAscii(std::basic_string_view<Unit>& text) noexcept {
    const auto end = std::find_if(text.begin(), text.end(),
                                  [](Unit unit) { return static_cast<std::make_unsigned_t<Unit>>(unit) >= 0x80; });
    const auto run = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(run.size());
    return run;
}

}  // namespace

int MultiByteToWideChar(DWORD codePage, DWORD flags, const char* text, int length, WideChar* buffer,
                        int size) noexcept {
    if (!AreArgumentsSound(codePage, text, length, buffer, size)) return Posix::Fail(ERROR_INVALID_PARAMETER, 0);
    if ((flags & ~MB_ERR_INVALID_CHARS) != 0) return Posix::Fail(ERROR_INVALID_FLAGS, 0);

    UnitSink<WideChar> sink(buffer, size);
    for (std::string_view rest = SourceText(text, length);;) {
        sink.AppendAscii(TakeAscii(rest));
        if (rest.empty()) break;
        const char32_t character = Common::TakeUtf8(rest);
        if (character == MalformedCharacter && flags == MB_ERR_INVALID_CHARS)
            return Posix::Fail(ERROR_NO_UNICODE_TRANSLATION, 0);
        sink.Append(Common::EncodeUtf16(character == MalformedCharacter ? Common::ReplacementCharacter : character));
    }
    return sink.Result();
}

int WideCharToMultiByte(DWORD codePage, DWORD flags, const WideChar* text, int length, char* buffer, int size,
                        const char* defaultChar, BOOL* usedDefault) noexcept {
    if (!AreArgumentsSound(codePage, text, length, buffer, size) || defaultChar != nullptr || usedDefault != nullptr)
        return Posix::Fail(ERROR_INVALID_PARAMETER, 0);
    if (flags != 0) return Posix::Fail(ERROR_INVALID_FLAGS, 0);

    UnitSink<char> sink(buffer, size);
    for (std::u16string_view rest = SourceText(text, length);;) {
        sink.AppendAscii(TakeAscii(rest));
        if (rest.empty()) break;
        const char32_t character = Common::TakeUtf16(rest);
        sink.Append(Common::EncodeUtf8(character == MalformedCharacter ? Common::ReplacementCharacter : character));
    }
    return sink.Result();
}

}  // namespace Platform
