#include "Host/Console/StopSignal.h"

#include <algorithm>
#include <atomic>

#include "Harbor/Failure.h"

#include "Host/Console/Windows/System.h"

namespace Host {
namespace {

// Global, since a control handler gets no argument of the program's. The event is never reset: a request is not
// withdrawn.
constinit std::atomic<HANDLE> StopEvent{nullptr};

HANDLE HandleOf(std::intptr_t object) noexcept {
    return reinterpret_cast<HANDLE>(object);
}

bool IsSet(HANDLE event) noexcept {
    return ::WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
}

// Runs on a thread that the system makes for it.
BOOL WINAPI OnControl(DWORD control) noexcept {
    const HANDLE stop = StopEvent.load();
    if (stop == nullptr || IsSet(stop)) return FALSE;
    ::SetEvent(stop);
    // The system ends the process as soon as the handler of these events returns. The program gets the seconds that the
    // system allows to end by itself.
    if (control != CTRL_C_EVENT && control != CTRL_BREAK_EVENT) ::Sleep(INFINITE);
    return TRUE;
}

}  // namespace

StopSignal::StopSignal() {
    const HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    Harbor::ThrowLastErrorIf(event == nullptr, "Create the stop event");
    waitObject_ = reinterpret_cast<std::intptr_t>(event);
    StopEvent = event;
    ::SetConsoleCtrlHandler(&OnControl, TRUE);
}

StopSignal::~StopSignal() {
    ::SetConsoleCtrlHandler(&OnControl, FALSE);
    ::CloseHandle(StopEvent.exchange(nullptr));
}

void StopSignal::Request() const noexcept {
    ::SetEvent(HandleOf(waitObject_));
}

bool StopSignal::WaitFor(std::chrono::milliseconds time) const noexcept {
    constexpr std::chrono::milliseconds::rep longest = INFINITE - 1;
    const auto wait = std::clamp<std::chrono::milliseconds::rep>(time.count(), 0, longest);
    return ::WaitForSingleObject(HandleOf(waitObject_), static_cast<DWORD>(wait)) == WAIT_OBJECT_0;
}

void IgnoreBrokenPipes() noexcept {}

}  // namespace Host
