#include "Host/Console/KeyMode.h"

#include "Host/Console/Windows/System.h"

namespace Host {

struct KeyMode::Found {
    DWORD mode = 0;
    bool isKnown = false;
};

namespace {

constexpr DWORD LineFlags = ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT;

HANDLE Input() noexcept {
    return ::GetStdHandle(STD_INPUT_HANDLE);
}

}  // namespace

bool KeyMode::IsPossible() noexcept {
    DWORD mode = 0;
    return ::GetConsoleMode(Input(), &mode);
}

KeyMode::KeyMode() : found_(std::make_unique<Found>()) {
    found_->isKnown = ::GetConsoleMode(Input(), &found_->mode);
    Renew();
}

KeyMode::~KeyMode() {
    if (found_->isKnown) ::SetConsoleMode(Input(), found_->mode);
}

void KeyMode::Renew() noexcept {
    DWORD mode = 0;
    const bool isChanged = found_->isKnown && ::GetConsoleMode(Input(), &mode) && (mode & LineFlags) != 0;
    if (isChanged) ::SetConsoleMode(Input(), mode & ~LineFlags);
}

}  // namespace Host
