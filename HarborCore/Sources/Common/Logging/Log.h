// The log statement.
//
//     LOG(Dbg, u"Action creation time: " << FormatTimePoint(now));
//
// The operands are those of a WideStream, inserted one after the other. They aren't evaluated unless the severity is
// enabled: a disabled statement costs one tick read and one atomic load. An exception of an operand leaves the text so
// far and a mark behind it. The line is written when the statement returns, on the calling thread. A statement can
// throw HRX: when memory runs out while the line is formatted, or when the log directory can't be worked out. TRY_LOG,
// for places that can't fail or that already deal with a failure, loses the line instead.
#pragma once

#include "Common/Base/WideStream.h"
#include "Common/Logging/LogSeverity.h"

namespace Harbor {

// A place in the source, fixed at build time.
struct SourcePlace {
    const WideChar* file;
    std::uint32_t line;
};

// Whether a statement of that severity is live. Looks at the settings again when the last look is more than five
// seconds old.
[[nodiscard]] bool IsLogEnabled(std::uint32_t severity);

// What marks a statement that an exception of an operand cut short.
inline constexpr std::u16string_view LogExceptionMark = u"... (***EXCEPTION***)";

// The operands of one statement: a callable that inserts them into a stream, borrowed for the call.
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

// The text of the operands; whatever an insertion throws becomes the mark.
[[nodiscard]] WideString BuildLogText(const LogOperands& operands);

// Formats one line and hands it to the loggers. The severity isn't tested again.
void WriteLogLine(std::uint32_t severity, std::u16string_view text, const SourcePlace& place);
void WriteLogStatement(std::uint32_t severity, const LogOperands& operands, const SourcePlace& place);

}  // namespace Harbor

// In parentheses, since it stands among the arguments of other macros.
#define HARBOR_SOURCE_PLACE (::Harbor::SourcePlace{u"" __FILE__, __LINE__})

// The severity is a name of Harbor::LogSeverity; the operands stand with "<<" between them.
#define LOG(severity, ...) LOG_AT(HARBOR_SOURCE_PLACE, severity, __VA_ARGS__)

#define TRY_LOG(severity, ...) TRY_LOG_AT(HARBOR_SOURCE_PLACE, severity, __VA_ARGS__)

// The same for a place that the caller was given.
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
