// Standard input: blocks of bytes, and waiting for them and for other events at once.
#pragma once

#include <chrono>
#include <memory>
#include <span>
#include <string>

#include "Host/Console/StopSignal.h"

namespace Host {

// Waits for input and stores it. Returns the number of bytes, 0 at the end of the input.
[[nodiscard]] std::size_t ReadStandardInput(std::span<char> buffer);

// Reads the standard input while the program does something else. There is at most one object in a process.
class InputBlocks {
public:
    enum class Event { Stop, Block, Time };

    InputBlocks();
    InputBlocks(const InputBlocks&) = delete;
    InputBlocks& operator=(const InputBlocks&) = delete;
    ~InputBlocks();

    // Waits for a request to stop, for input, or the given time, whichever comes first. For Event::Block stores the
    // input, in UTF-8; an empty block is the end, and no block comes after it.
    [[nodiscard]] Event Wait(const StopSignal& stop, std::chrono::steady_clock::time_point until, std::string& block);

private:
    class Source;
    std::shared_ptr<Source> source_;
};

}  // namespace Host
