#include "TestSupport.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "Platform/Errors.h"
#include "Platform/Process.h"
#include "Platform/Threads.h"
#include "Support/NextDefinition.h"

namespace Platform {

void GetSystemTimePreciseAsFileTime(FILETIME* time) noexcept {
    const TimePoint set = System.clock;
    if (set == TimePoint{}) return GetSystemTimeAsFileTime(time);
    const auto ticks = static_cast<std::uint64_t>((set.time_since_epoch() + 11644473600s).count());
    *time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

DWORD GetDynamicTimeZoneInformation(DYNAMIC_TIME_ZONE_INFORMATION* zone) noexcept {
    *zone = System.zone;
    SetLastError(ERROR_ACCESS_DENIED);
    if (InjectedFault.Strikes(Fallible::Call, __func__, E_FAIL)) return TIME_ZONE_ID_INVALID;
    return System.zoneResult;
}

HANDLE CreateThread(void* security, std::size_t stackSize, LPTHREAD_START_ROUTINE routine, void* argument, DWORD flags,
                    DWORD* threadId) noexcept {
    static const auto create = NextDefinitionOf(&CreateThread, __func__);
    ++System.threadsAsked;
    DWORD refusal = System.threadRefusal;
    if (InjectedFault.Strikes(Fallible::Call, __func__, HResultFromWin32(ERROR_MAX_THRDS_REACHED))) {
        refusal = ERROR_MAX_THRDS_REACHED;
    }
    if (refusal == 0) return create(security, stackSize, routine, argument, flags, threadId);
    SetLastError(refusal);
    return nullptr;
}

}  // namespace Platform

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++Allocations;
    if (InjectedFault.Strikes(Fallible::Allocation, __func__, E_OUTOFMEMORY)) return nullptr;
    return std::malloc(std::max<std::size_t>(size, 1));
}
void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

bool IsLike(std::string_view text, std::string_view pattern) {
    const std::size_t star = pattern.find('*');
    if (star == pattern.npos) return text == pattern;
    if (!text.starts_with(pattern.substr(0, star))) return false;
    for (std::size_t from = star; from <= text.size(); ++from) {
        if (IsLike(text.substr(from), pattern.substr(star + 1))) return true;
    }
    return false;
}

std::string Narrow(std::u16string_view text) {
    return {text.begin(), text.end()};
}

std::string Shown(const void* pointer) {
    return Narrow((WideStream() << pointer).Text());
}

testing::AssertionResult CapturedLog::Wrote(const Texts& patterns) {
    Texts lines;
    for (const std::string& line : lines_.Take()) {
        const std::string words = line.substr(line.find_first_not_of(' ', 4));
        const auto begins = [&](const char* trace) { return words.starts_with(trace); };
        if (std::ranges::any_of(std::array{"Entering: ", "Exiting: ", "EXCEPTION at: "}, begins)) continue;
        lines.push_back(line.substr(0, line.find(' ')) + ' ' + words);
    }
    if (std::ranges::equal(lines, patterns, IsLike)) return testing::AssertionSuccess();
    return testing::AssertionFailure() << testing::PrintToString(lines) << " instead of "
                                       << testing::PrintToString(patterns);
}

HRESULT RecordingListener::OnActionTriggered(IActionSubscription* subscription, IAction* action) {
    WideString name;
    EXPECT_EQ(action->GetName(&name), S_OK);
    {
        const LockGuard guard(lock_);
        calls_.push_back(Narrow(name));
    }
    ++count_;
    onAction(action);
    return onCall(*subscription);
}

Texts RecordingListener::TakeCalls() {
    const LockGuard guard(lock_);
    return std::exchange(calls_, {});
}

void RecordingListener::WaitForCalls(std::size_t count) const {
    while (count_ < count) Platform::Sleep(0);
}
