// A borrowed text, for names and paths that are passed on. If its length is not known, it is measured at the first use.
// A null text has the length 0.
#pragma once

#include <string_view>

#include "Harbor/Types.h"

namespace Harbor {

class TextRef {
public:
    TextRef(const WideString& text) noexcept : text_(text.c_str()), length_(text.size()) {}
    TextRef(const WideChar* text) noexcept : text_(text) {}

    const WideChar* Data() const noexcept { return text_; }
    std::size_t Length() const noexcept {
        if (length_ == NotMeasured) length_ = text_ == nullptr ? 0 : std::u16string_view(text_).size();
        return length_;
    }
    std::u16string_view View() const noexcept { return {text_, Length()}; }

private:
    static constexpr std::size_t NotMeasured = ~std::size_t{0};

    const WideChar* text_;
    mutable std::size_t length_ = NotMeasured;
};

}  // namespace Harbor
