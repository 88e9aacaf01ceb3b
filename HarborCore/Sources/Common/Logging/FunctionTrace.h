// The trace of a method. It logs one line when the method is entered and one line with the elapsed time when it is
// left. Lines that the thread logs in between are indented by two more spaces.
//
//     TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionManager::OnTimerEvent");
//
// The macro is the first statement of the method; the trace ends with the scope. If the severity is off at entry, the
// exit is not traced either. Like a log statement, the macro can throw HRX. TRY_TRACE_FUNCTION does not throw: if the
// trace fails, the method runs without it.
#pragma once

#include <memory>

#include "Common/Logging/Log.h"

namespace Harbor {

// Adds levels to the indentation of the thread's lines and removes them at the end of its own life, which must be on
// the same thread.
class IndentationGuard {
public:
    IndentationGuard() noexcept = default;
    IndentationGuard(const IndentationGuard&) = delete;
    IndentationGuard& operator=(const IndentationGuard&) = delete;
    ~IndentationGuard() { TakeBack(); }

    void Add(std::int32_t levels) noexcept;  // may be negative
    void TakeBack() noexcept { Add(-static_cast<std::int32_t>(added_)); }

private:
    std::uint32_t added_ = 0;
};

class FunctionTrace {
public:
    // `exceptionSeverity` is the severity of the exit line if an exception leaves the method. Every trace of this
    // module passes the same number for both.
    FunctionTrace(std::uint32_t severity, std::uint32_t exceptionSeverity, WideString name, const SourcePlace& place);
    FunctionTrace(const FunctionTrace&) = delete;
    FunctionTrace& operator=(const FunctionTrace&) = delete;
    ~FunctionTrace();

private:
    void WriteExit(std::int64_t endCounter);

    const std::uint32_t severity_;
    const std::uint32_t exceptionSeverity_;
    const WideString name_;
    const SourcePlace place_;
    std::int64_t startCounter_ = 0;
    IndentationGuard indentation_;
    const int uncaughtAtEntry_;
};

// Creates a trace without a test of the severity. Throws HRX as a log statement does.
[[nodiscard]] std::unique_ptr<FunctionTrace> MakeFunctionTrace(std::uint32_t severity, const LogOperands& name,
                                                               const SourcePlace& place);

// Returns null if the severity is off.
template <class Name>
std::unique_ptr<FunctionTrace> OpenFunctionTrace(std::uint32_t severity, const Name& name, const SourcePlace& place) {
    if (!IsLogEnabled(severity)) return nullptr;
    return MakeFunctionTrace(
        severity, [&](WideStream& stream) { stream << name; }, place);
}

// Returns null also if the trace fails.
template <class Name>
std::unique_ptr<FunctionTrace> TryOpenFunctionTrace(std::uint32_t severity, const Name& name,
                                                    const SourcePlace& place) noexcept {
    try {
        return OpenFunctionTrace(severity, name, place);
    } catch (...) {
        return nullptr;
    }
}

// A duration, which a stream shows as " [1 234.567 ms]".
struct ElapsedTime {
    std::int64_t microseconds;
};
WideStream& operator<<(WideStream& stream, ElapsedTime elapsed);
// Converts ticks of a counter; `frequency` is its number of ticks in a second.
[[nodiscard]] std::int64_t MicrosecondsOf(std::int64_t counterTicks, std::int64_t frequency) noexcept;

}  // namespace Harbor

#define TRACE_FUNCTION(severity, name) \
    const auto functionTrace = ::Harbor::OpenFunctionTrace(::Harbor::LogSeverity::severity, name, HARBOR_SOURCE_PLACE)

#define TRY_TRACE_FUNCTION(severity, name) \
    const auto functionTrace =             \
        ::Harbor::TryOpenFunctionTrace(::Harbor::LogSeverity::severity, name, HARBOR_SOURCE_PLACE)
