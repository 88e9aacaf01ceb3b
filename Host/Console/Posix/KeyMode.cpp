#include "Host/Console/KeyMode.h"

#include <termios.h>
#include <unistd.h>

namespace Host {

struct KeyMode::Found {
    termios mode{};
    bool isKnown = false;
};

namespace {

constexpr tcflag_t LineFlags = ICANON | ECHO;

bool IsInForeground() noexcept {
    return tcgetpgrp(STDIN_FILENO) == getpgrp();
}

}  // namespace

bool KeyMode::IsPossible() noexcept {
    return isatty(STDIN_FILENO) != 0;
}

KeyMode::KeyMode() : found_(std::make_unique<Found>()) {
    found_->isKnown = tcgetattr(STDIN_FILENO, &found_->mode) == 0;
    Renew();
}

KeyMode::~KeyMode() {
    if (found_->isKnown && IsInForeground()) tcsetattr(STDIN_FILENO, TCSANOW, &found_->mode);
}

void KeyMode::Renew() noexcept {
    termios mode{};
    if (!found_->isKnown || !IsInForeground() || tcgetattr(STDIN_FILENO, &mode) != 0) return;
    if ((mode.c_lflag & LineFlags) == 0) return;
    mode.c_lflag &= ~LineFlags;
    mode.c_cc[VMIN] = 1;
    mode.c_cc[VTIME] = 0;
    tcsetattr(STDIN_FILENO, TCSANOW, &mode);
}

}  // namespace Host
