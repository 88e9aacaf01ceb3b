// The log statement.
//
//     LOG(Dbg, u"Action creation time: " << FormatTimePoint(now));
//
// The operands are inserted into a WideStream, from left to right. They are evaluated only if the severity is enabled:
// a disabled statement costs one read of the tick count and two atomic loads. If an operand throws, the line has the
// text that was inserted until then, and a mark. The line is written on the calling thread, before the statement ends.
//
// LOG throws HRX if memory runs out while the line is formatted or if the log directory cannot be determined. TRY_LOG
// loses the line instead. It is for code that must not throw and for code that handles another failure.
#pragma once

#include <atomic>

#include "Common/Base/WideStream.h"
#include "Common/Logging/LogSeverity.h"
#include "Platform/Time.h"

namespace Harbor {

// A place in the source code. `file` is a static text.
struct SourcePlace {
    const WideChar* file;
    std::uint32_t line;
};

// The limit of the module's log and the tick count of its last refresh. LogSettings maintains both. They are constants
// at first, so that a test needs neither a call nor the log manager.
struct LogLimitState {
    std::atomic<std::uint32_t> lastRefreshTick{0};  // 0: never refreshed, or the log has ended
    std::atomic<std::uint32_t> maxSeverity{0};

    bool IsRefreshDue() const noexcept {
        const std::uint32_t last = lastRefreshTick.load(std::memory_order_acquire);
        return last == 0 || Platform::GetTickCount() - last > LogDefaults.refreshIntervalMs;
    }
};
inline constinit LogLimitState LogLimit;

// As IsLogEnabled, when a refresh is due.
[[nodiscard]] bool RefreshAndTest(std::uint32_t severity);

// Returns whether lines of that severity are written. Reads the settings again if the last read is more than five
// seconds old. Any thread may call it.
[[nodiscard]] inline bool IsLogEnabled(std::uint32_t severity) {
    if (LogLimit.IsRefreshDue()) [[unlikely]]
        return RefreshAndTest(severity);
    return severity != LogSeverity::None && severity <= LogLimit.maxSeverity.load(std::memory_order_relaxed);
}

// Ends the text of a statement in which an operand threw an exception.
inline constexpr std::u16string_view LogExceptionMark = u"... (***EXCEPTION***)";

// The operands of one statement: a borrowed callable that inserts them into a stream.
class LogOperands {
public:
    template <class Insert>
    LogOperands(const Insert& insert) noexcept
        : context_(&insert),
          insert_([](const void* context, WideStream& stream) { (*static_cast<const Insert*>(context))(stream); }) {}

    void InsertInto(WideStream& stream) const { insert_(context_, stream); }

private:
    const void* context_;
    void (*insert_)(const void* context, WideStream& stream);
};

// If an insertion throws any exception, the mark ends the text.
void InsertLogOperands(WideStream& stream, const LogOperands& operands);

// Format one line and pass it to the loggers, without a test of the severity. They throw HRX as LOG does.
void WriteLogLine(std::uint32_t severity, std::u16string_view text, const SourcePlace& place);
void WriteLogStatement(std::uint32_t severity, const LogOperands& operands, const SourcePlace& place);

}  // namespace Harbor

// In parentheses, since it is passed to other macros.
#define HARBOR_SOURCE_PLACE (::Harbor::SourcePlace{u"" __FILE__, __LINE__})

// `severity` is a name in Harbor::LogSeverity. The operands are separated by "<<".
#define LOG(severity, ...) LOG_AT(HARBOR_SOURCE_PLACE, severity, __VA_ARGS__)

#define TRY_LOG(severity, ...) TRY_LOG_AT(HARBOR_SOURCE_PLACE, severity, __VA_ARGS__)

// The same with the source place as an argument.
#define LOG_AT(place, severity, ...)                                                                           \
    do {                                                                                                       \
        if (::Harbor::IsLogEnabled(::Harbor::LogSeverity::severity)) {                                         \
            const auto insertLogOperands = [&](::Harbor::WideStream& logStream) { logStream << __VA_ARGS__; }; \
            ::Harbor::WriteLogStatement(::Harbor::LogSeverity::severity, insertLogOperands, place);            \
        }                                                                                                      \
    } while (false)

#define TRY_LOG_AT(place, severity, ...)          \
    do {                                          \
        try {                                     \
            LOG_AT(place, severity, __VA_ARGS__); \
        } catch (...) {                           \
        }                                         \
    } while (false)
