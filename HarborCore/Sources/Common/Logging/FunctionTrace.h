// The trace of a method: one line when it is entered, one with the elapsed time when it is left, and everything that
// the thread logs in between two spaces further in.
//
//     TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionManager::OnTimerEvent");
//
// It is the first statement of the method, and its end is the end of the scope. A trace that was off at entry stays
// off. Like a log statement, it can throw HRX at entry; TRY_TRACE_FUNCTION, for methods that can't fail, goes on
// without the trace.
#pragma once

#include <memory>

#include "Common/Logging/Log.h"

namespace Harbor {

// Adds levels to the thread's depth, and takes back at its end what it has added.
class IndentationGuard {
public:
    IndentationGuard() noexcept = default;
    IndentationGuard(const IndentationGuard&) = delete;
    IndentationGuard& operator=(const IndentationGuard&) = delete;
    ~IndentationGuard() { TakeBack(); }

    void Add(std::int32_t levels) noexcept;
    void TakeBack() noexcept { Add(-static_cast<std::int32_t>(added_)); }

private:
    std::uint32_t added_ = 0;
};

class FunctionTrace {
public:
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

// Whatever the severity. Throws HRX as a log statement does.
[[nodiscard]] std::unique_ptr<FunctionTrace> MakeFunctionTrace(std::uint32_t severity, const LogOperands& name,
                                                               const SourcePlace& place);

// Null when the severity is off.
template <class Name>
std::unique_ptr<FunctionTrace> OpenFunctionTrace(std::uint32_t severity, const Name& name, const SourcePlace& place) {
    if (!IsLogEnabled(severity)) return nullptr;
    return MakeFunctionTrace(
        severity, [&](WideStream& stream) { stream << name; }, place);
}

// Null also when the trace fails.
template <class Name>
std::unique_ptr<FunctionTrace> TryOpenFunctionTrace(std::uint32_t severity, const Name& name,
                                                    const SourcePlace& place) noexcept {
    try {
        return OpenFunctionTrace(severity, name, place);
    } catch (...) {
        return nullptr;
    }
}

// " [1 234.567 ms]" for a number of microseconds.
[[nodiscard]] WideString FormatElapsed(std::int64_t microseconds);
// By a counter of that frequency.
[[nodiscard]] std::int64_t MicrosecondsOf(std::int64_t counterTicks, std::int64_t frequency) noexcept;

}  // namespace Harbor

#define TRACE_FUNCTION(severity, name) \
    const auto functionTrace = ::Harbor::OpenFunctionTrace(::Harbor::LogSeverity::severity, name, HARBOR_SOURCE_PLACE)

#define TRY_TRACE_FUNCTION(severity, name) \
    const auto functionTrace =             \
        ::Harbor::TryOpenFunctionTrace(::Harbor::LogSeverity::severity, name, HARBOR_SOURCE_PLACE)
