// Makes lines of the keys that are typed on a terminal. The program shows the line itself, so that its own output never
// mixes with it.
//
// Backspace removes a character, Ctrl-W a word, Ctrl-U the line; Ctrl-D in an empty line ends the input. Other control
// characters and the sequences of other keys, such as arrows, have no effect.
#pragma once

#include <deque>
#include <string>
#include <string_view>

namespace Host {

class LineEditor {
public:
    // Takes bytes that were typed, in UTF-8.
    void Feed(std::string_view bytes);

    // The line that is being typed.
    [[nodiscard]] const std::string& Text() const noexcept { return text_; }
    // Removes the first complete line and returns true, or returns false if there is none.
    [[nodiscard]] bool TakeLine(std::string& line);
    [[nodiscard]] bool HasEnded() const noexcept { return ended_; }

private:
    enum class Key { Plain, Escape, Sequence };

    void TakePlain(char byte);
    void RemoveCharacter();
    void RemoveWord();

    Key key_ = Key::Plain;  // what the next byte belongs to
    std::string text_;
    std::deque<std::string> lines_;
    bool ended_ = false;
};

}  // namespace Host
