// The text of a log line.
#pragma once

#include "Common/Logging/Log.h"
#include "Platform/Time.h"

namespace Harbor {

class ILogFormatter {
public:
    // Stores the line with its line end in `result`, in place of what was there. A null `time`, which nobody passes
    // yet, means the current time.
    virtual void Format(TextBuffer& result, std::uint32_t severity, const SourcePlace& place,
                        std::u16string_view message, std::int32_t indentation,
                        const Platform::FILETIME* time) const = 0;

protected:
    ~ILogFormatter() = default;
};

// Formats the local time and then the severity, process, thread, source and message, as this printf format does:
// "%04u-%02u-%02u %02u:%02u:%02u.%03u%04u | %-4.4s |%5u %5u | %.*s:%-*u| %*s%s\r\n"
class DefaultLogFormatter final : public ILogFormatter {
public:
    void Format(TextBuffer& result, std::uint32_t severity, const SourcePlace& place, std::u16string_view message,
                std::int32_t indentation, const Platform::FILETIME* time) const override;
};

// Returns the time of the wall clock in its finest resolution.
[[nodiscard]] Platform::FILETIME LogTimeStamp() noexcept;

}  // namespace Harbor
