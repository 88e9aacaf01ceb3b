#include "SystemMessages.h"

#include <algorithm>
#include <functional>
#include <iterator>

#include "SystemMessageTable.h"

namespace Platform::Posix {

namespace {

static_assert(std::ranges::adjacent_find(SystemMessages, std::greater_equal(), &SystemMessage::code) ==
                  std::end(SystemMessages),
              "The codes must be in ascending order, each only once");

std::optional<std::u16string_view> FindText(DWORD code) noexcept {
    const auto* const entry = std::ranges::lower_bound(SystemMessages, code, {}, &SystemMessage::code);
    return entry != std::end(SystemMessages) && entry->code == code ? std::optional(entry->text) : std::nullopt;
}

}  // namespace

std::optional<std::u16string_view> SystemMessageText(DWORD code) noexcept {
    constexpr DWORD lowWord = 0xFFFF, win32Failure = 0x80070000;
    if (const auto text = FindText(code)) return text;
    return (code & ~lowWord) == win32Failure ? FindText(code & lowWord) : std::nullopt;
}

}  // namespace Platform::Posix
