#include "Host/Console/KeyMode.h"

#include "Host/Console/Windows/System.h"

namespace Host {

struct KeyMode::Found {
    const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
    DWORD mode = 0;
    const bool isKnown = ::GetConsoleMode(input, &mode) != 0;
};

bool KeyMode::IsPossible() noexcept {
    return Found{}.isKnown;
}

KeyMode::KeyMode() : found_(std::make_unique<Found>()) {
    Renew();
}

KeyMode::~KeyMode() {
    if (found_->isKnown) ::SetConsoleMode(found_->input, found_->mode);
}

void KeyMode::Renew() noexcept {
    constexpr DWORD lineFlags = ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT;
    if (found_->isKnown) ::SetConsoleMode(found_->input, found_->mode & ~lineFlags);
}

}  // namespace Host
