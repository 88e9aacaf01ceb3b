// Standard input, as it comes.
#pragma once

#include <chrono>
#include <span>
#include <string>

#include "Host/Console/StopSignal.h"

namespace Host {

// Waits for what is there, and gives how much of it was stored: 0 at the end.
[[nodiscard]] std::size_t ReadStandardInput(std::span<char> buffer);

// The lines that are typed while the program does something else.
class TypedLines {
public:
    enum class Event { Stop, Line, Time };

    // Waits for the wish to stop, a line, or the moment, whichever comes first. After the end of the input no line
    // comes. `line` is written for a line alone, without its end.
    [[nodiscard]] Event Wait(const StopSignal& stop, std::chrono::steady_clock::time_point until, std::string& line);

private:
    bool TakeLine(std::string& line);
    void ReadMore();

    std::string pending_;
    bool ended_ = false;
};

}  // namespace Host
