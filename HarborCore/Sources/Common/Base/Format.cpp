#include "Common/Base/Format.h"

#include <algorithm>
#include <stdexcept>

namespace Harbor {
namespace {

struct Conversion {
    bool zeros = false;
    bool alternate = false;
    std::size_t width = 0;
    WideChar type = 0;
};

// Reads the format once, from left to right, and uses the arguments in their order.
class Formatter {
public:
    Formatter(std::u16string_view format, std::initializer_list<FormatArgument> arguments)
        : rest_(format), arguments_(arguments) {}

    WideString Run() {
        while (!rest_.empty()) {
            const std::size_t literal = std::min(rest_.find(u'%'), rest_.size());
            result_.append(rest_.substr(0, literal));
            rest_.remove_prefix(literal);
            if (!rest_.empty()) Convert(ReadConversion());
        }
        return std::move(result_);
    }

private:
    WideChar Take() {
        const WideChar c = rest_.empty() ? u'\0' : rest_.front();
        if (!rest_.empty()) rest_.remove_prefix(1);
        return c;
    }

    const FormatArgument& NextArgument() {
        if (used_ == arguments_.size()) throw std::out_of_range("too few arguments for a format");
        return arguments_.begin()[used_++];
    }

    Conversion ReadConversion() {
        Conversion conversion;
        Take();
        for (; rest_.starts_with(u'0') || rest_.starts_with(u'#'); Take()) {
            (rest_.front() == u'0' ? conversion.zeros : conversion.alternate) = true;
        }
        while (!rest_.empty() && rest_.front() >= u'0' && rest_.front() <= u'9') {
            conversion.width = conversion.width * 10 + static_cast<std::size_t>(Take() - u'0');
        }
        if (rest_.starts_with(u"I64")) rest_.remove_prefix(3);
        conversion.type = Take();
        return conversion;
    }

    void Convert(const Conversion& conversion) {
        switch (conversion.type) {
            case u's':
                result_.append(NextArgument().Text());
                break;
            case u'p':
                if (conversion.alternate) result_.append(u"0X");
                Pad({.zeros = true, .width = 16}, {}, Digits(NextArgument().Unsigned(), 16, u'A'));
                break;
            case u'd': {
                const std::int64_t value = NextArgument().Signed();
                const auto magnitude = static_cast<std::uint64_t>(value);
                Pad(conversion, value < 0 ? u"-" : u"", Digits(value < 0 ? 0 - magnitude : magnitude, 10, u'a'));
                break;
            }
            case u'u':
                Pad(conversion, {}, Digits(NextArgument().Unsigned(), 10, u'a'));
                break;
            case u'x':
            case u'X':
                Pad(conversion, {}, Digits(NextArgument().Unsigned(), 16, conversion.type == u'x' ? u'a' : u'A'));
                break;
            default:
                throw std::out_of_range("unknown conversion in a format");
        }
    }

    std::u16string_view Digits(std::uint64_t value, unsigned base, WideChar firstLetter) {
        WideChar* at = std::end(digits_);
        do {
            const auto digit = static_cast<unsigned>(value % base);
            *--at = static_cast<WideChar>(digit < 10 ? u'0' + digit : firstLetter + digit - 10);
            value /= base;
        } while (value != 0);
        return {at, static_cast<std::size_t>(std::end(digits_) - at)};
    }

    void Pad(const Conversion& conversion, std::u16string_view sign, std::u16string_view digits) {
        const std::size_t length = sign.size() + digits.size();
        const std::size_t padding = conversion.width > length ? conversion.width - length : 0;
        if (!conversion.zeros) result_.append(padding, u' ');
        result_.append(sign);
        if (conversion.zeros) result_.append(padding, u'0');
        result_.append(digits);
    }

    std::u16string_view rest_;
    std::initializer_list<FormatArgument> arguments_;
    std::size_t used_ = 0;
    WideString result_;
    WideChar digits_[24] = {};
};

}  // namespace

std::uint64_t FormatArgument::Unsigned() const noexcept {
    return size_ < sizeof(bits_) ? bits_ & ((std::uint64_t{1} << (size_ * 8)) - 1) : bits_;
}

std::int64_t FormatArgument::Signed() const noexcept {
    return static_cast<std::int64_t>(bits_);
}

WideString FormatWideArguments(std::u16string_view format, std::initializer_list<FormatArgument> arguments) {
    return Formatter(format, arguments).Run();
}

}  // namespace Harbor
