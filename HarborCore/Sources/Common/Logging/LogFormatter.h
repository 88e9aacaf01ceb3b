// The exact text of a log line.
#pragma once

#include "Common/Logging/Log.h"
#include "Platform/Time.h"

namespace Harbor {

class ILogFormatter {
public:
    // Puts the line, line end included, into `result`. A null `time` means now.
    virtual void Format(WideString& result, std::uint32_t severity, const SourcePlace& place,
                        std::u16string_view message, std::int32_t indentation,
                        const Platform::FILETIME* time) const = 0;

protected:
    ~ILogFormatter() = default;
};

// As this printf format gives it, local time and file name first:
// "%04u-%02u-%02u %02u:%02u:%02u.%03u%04u | %-4.4s |%5u %5u | %.*s:%-*u| %*s%s\r\n"
class DefaultLogFormatter final : public ILogFormatter {
public:
    void Format(WideString& result, std::uint32_t severity, const SourcePlace& place, std::u16string_view message,
                std::int32_t indentation, const Platform::FILETIME* time) const override;
};

// The wall clock in the finest resolution there is.
[[nodiscard]] Platform::FILETIME LogTimeStamp() noexcept;

}  // namespace Harbor
