// Lines of the standard input.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "Host/Console/KeyMode.h"
#include "Host/Console/LineEditor.h"
#include "Host/Console/StandardInput.h"

namespace Host {

// Waits for a line and for other events at once.
class TypedLines {
public:
    enum class Event { Stop, Line, Time };

    // If there is `onTyped` and standard input is a terminal, the program shows what is typed: `onTyped` is called with
    // the line so far at each key, inside Wait. Else the system shows it.
    explicit TypedLines(std::function<void(const std::string&)> onTyped);

    // Waits for a request to stop, a line, or the given time, whichever comes first. After the end of the input no line
    // comes. `line` is set only for Event::Line, without the line's end.
    [[nodiscard]] Event Wait(const StopSignal& stop, std::chrono::steady_clock::time_point until, std::string& line);

private:
    bool TakeLine(std::string& line);
    void Add(std::string_view block);

    const std::function<void(const std::string&)> onTyped_;
    std::optional<KeyMode> keyMode_;  // nothing if the system shows what is typed
    InputBlocks input_;               // after the mode, which it reads in
    LineEditor editor_;               // used in key mode
    std::string pending_;             // used without it
    bool ended_ = false;
};

}  // namespace Host
