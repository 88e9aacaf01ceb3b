// Conversion between UTF-8 and the 16-bit text of the interfaces. Malformed input becomes U+FFFD. If memory runs out,
// std::bad_alloc is thrown.
#pragma once

#include <string>
#include <string_view>

#include "Harbor/Types.h"
#include "Platform/Text.h"

namespace Harbor {

[[nodiscard]] inline WideString FromUtf8(std::string_view text) {
    WideString wide(text.size(), u'\0');
    const int length = Platform::MultiByteToWideChar(Platform::CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                                     wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

[[nodiscard]] inline std::string ToUtf8(std::u16string_view text) {
    std::string narrow(text.size() * 3, '\0');
    const int length = Platform::WideCharToMultiByte(Platform::CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                                     narrow.data(), static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(static_cast<std::size_t>(length));
    return narrow;
}

}  // namespace Harbor
