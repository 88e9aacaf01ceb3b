// A mode of the terminal in which the program gets each key at once.
#pragma once

#include <memory>

namespace Host {

// While it exists, standard input passes on each key when it is typed and does not show it. Keys that send signals keep
// their effect. The destructor restores the mode that the constructor found.
class KeyMode {
public:
    // Whether standard input is a terminal.
    [[nodiscard]] static bool IsPossible() noexcept;

    KeyMode();
    KeyMode(const KeyMode&) = delete;
    KeyMode& operator=(const KeyMode&) = delete;
    ~KeyMode();

    // Sets the mode again if another program has changed it, for instance a shell that had suspended this one. In the
    // background it has no effect: the terminal then belongs to another program.
    void Renew() noexcept;

private:
    struct Found;
    const std::unique_ptr<Found> found_;
};

}  // namespace Host
