// Standard input: blocks of bytes, or lines while the program does something else.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "Host/Console/KeyMode.h"
#include "Host/Console/StopSignal.h"

namespace Host {

// Waits for input and stores it. Returns the number of bytes, 0 at the end of the input.
[[nodiscard]] std::size_t ReadStandardInput(std::span<char> buffer);

// Waits for a line and for other events at once.
class TypedLines {
public:
    enum class Event { Stop, Line, Time };

    // If there is `onTyped` and standard input is a terminal, the program shows what is typed: `onTyped` is called with
    // the line so far at each key, inside Wait. Else the system shows it.
    explicit TypedLines(std::function<void(const std::string&)> onTyped);
    TypedLines(const TypedLines&) = delete;
    TypedLines& operator=(const TypedLines&) = delete;
    ~TypedLines();

    // Waits for a request to stop, a line, or the given time, whichever comes first. After the end of the input no line
    // comes. `line` is set only for Event::Line, without the line's end.
    [[nodiscard]] Event Wait(const StopSignal& stop, std::chrono::steady_clock::time_point until, std::string& line);

private:
    class Input;  // each system has its own way to wait for input and for a stop at once

    std::optional<KeyMode> keyMode_;  // nothing if the system shows what is typed
    std::shared_ptr<Input> input_;
};

}  // namespace Host
