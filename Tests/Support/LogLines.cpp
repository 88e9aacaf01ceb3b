#include "Support/LogLines.h"

#include <gtest/gtest.h>

#include "Common/Base/Text.h"
#include "Platform/Time.h"

namespace Stage {

constexpr std::size_t SeverityAt = 30, SourceAt = 51;

constinit std::atomic<std::uint32_t> Ticks{1'000'000};

void PassLogInterval() {
    Ticks += 5001;
}

LogLines::LogLines(const char* maxSeverity) {
    SetSeverity(maxSeverity);
    EXPECT_TRUE(Harbor::LogManager::Instance().Register(this));
}

LogLines::~LogLines() {
    Harbor::LogManager::Instance().Unregister(this);
    PassLogInterval();
}

void LogLines::Write(const char16_t* text, std::int32_t length) {
    const std::string line = Harbor::ToUtf8({text, static_cast<std::size_t>(length)});
    const Harbor::LockGuard guard(lock_);
    const std::size_t bar = line.find('|', SourceAt);  // after a source name that may be longer than its column
    ASSERT_TRUE(bar != line.npos && line.ends_with("\r\n")) << line;
    lines_.push_back(line.substr(SeverityAt, 5) + line.substr(bar + 2, line.size() - bar - 4));
}

void LogLines::SetSeverity(const Setting& name) {
    severity_.emplace("GS_Logger_MaxSeverity", name);
    PassLogInterval();
}

Strings LogLines::Take() {
    const Harbor::LockGuard guard(lock_);
    return std::exchange(lines_, {});
}

}  // namespace Stage

namespace Platform {

DWORD GetTickCount() noexcept {
    return Stage::Ticks;
}

}  // namespace Platform
