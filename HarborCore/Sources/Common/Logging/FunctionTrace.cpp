#include "Common/Logging/FunctionTrace.h"

#include <atomic>
#include <exception>

#include "Common/Base/Format.h"
#include "Common/Base/HRes.h"
#include "Common/Logging/LogManager.h"
#include "Platform/Text.h"
#include "Platform/Time.h"

namespace Harbor {
namespace {

std::int64_t ReadCounter() noexcept {
    std::int64_t counter = 0;
    Platform::QueryPerformanceCounter(&counter);
    return counter;
}

std::int64_t CounterFrequency() noexcept {
    static std::atomic<std::int64_t> known{0};
    std::int64_t frequency = known.load(std::memory_order_relaxed);
    if (frequency == 0) {
        Platform::QueryPerformanceFrequency(&frequency);
        known.store(frequency, std::memory_order_relaxed);
    }
    return frequency;
}

}  // namespace

void IndentationGuard::Add(std::int32_t levels) noexcept {
    ThreadIndentation::Add(levels);
    added_ += static_cast<std::uint32_t>(levels);
}

FunctionTrace::FunctionTrace(std::uint32_t severity, std::uint32_t exceptionSeverity, WideString name,
                             const SourcePlace& place)
    : severity_(severity),
      exceptionSeverity_(exceptionSeverity),
      name_(std::move(name)),
      place_(place),
      uncaughtAtEntry_(std::uncaught_exceptions()) {
    // The severity limit may have changed since the test of the statement.
    if (IsLogEnabled(severity_)) {
        WideStream text;
        text << u"Entering: " << name_;
        WriteLogLine(severity_, text.View(), place_);
        indentation_.Add(1);
    }
    startCounter_ = ReadCounter();
}

FunctionTrace::~FunctionTrace() {
    const std::int64_t endCounter = ReadCounter();
    try {
        WriteExit(endCounter);
    } catch (...) {
        // A trace must not throw into its method, above all not while another exception unwinds the stack.
    }
}

void FunctionTrace::WriteExit(std::int64_t endCounter) {
    const bool exceptionPassing = std::uncaught_exceptions() != uncaughtAtEntry_;
    const std::uint32_t severity = exceptionPassing ? exceptionSeverity_ : severity_;
    if (!IsLogEnabled(severity)) return;
    WideStream text;
    text << (exceptionPassing ? u"EXCEPTION at: " : u"Exiting: ") << name_
         << ElapsedTime{MicrosecondsOf(endCounter - startCounter_, CounterFrequency())};
    indentation_.TakeBack();
    WriteLogLine(severity, text.View(), place_);
}

std::unique_ptr<FunctionTrace> MakeFunctionTrace(std::uint32_t severity, const LogOperands& name,
                                                 const SourcePlace& place) {
    return ThrowIfOutOfMemory([&] {
        WideStream stream;
        InsertLogOperands(stream, name);
        return std::make_unique<FunctionTrace>(severity, severity, stream.Text(), place);
    });
}

std::int64_t MicrosecondsOf(std::int64_t counterTicks, std::int64_t frequency) noexcept {
    // Ticks in 10 microseconds, at least 1.
    const std::int64_t scale = std::max<std::int64_t>(frequency / 100000, 1);
    return counterTicks * 10 / scale;
}

WideStream& operator<<(WideStream& stream, ElapsedTime elapsed) {
    const WideString plain = FormatWide(u"%I64d.%03I64d", elapsed.microseconds / 1000, elapsed.microseconds % 1000);
    constexpr Platform::NUMBERFMTW format{.NumDigits = 3,
                                          .LeadingZero = 1,
                                          .Grouping = 3,
                                          .lpDecimalSep = u".",
                                          .lpThousandSep = u" ",
                                          .NegativeOrder = 1};
    WideChar grouped[64];
    const bool formatted = Platform::GetNumberFormatW(Platform::LOCALE_INVARIANT, 0, plain.c_str(), &format, grouped,
                                                      static_cast<int>(std::size(grouped))) != 0;
    return stream << u" [" << (formatted ? grouped : plain.c_str()) << u" ms]";
}

}  // namespace Harbor
