// The service's thread: it hands reports to callbacks, and keeps the promise that an ended watch is silent.
//
// It is shared by the service, its subscriptions and the thread itself, each of which may be the last to let go. Any
// thread may call any operation. The lock is never held while a callback runs.
#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "Common/Base/ConditionVariable.h"
#include "Common/Base/Thread.h"
#include "Harbor/ComponentPtr.h"
#include "Watch.h"

namespace ConfigServer {

struct PendingReport {
    std::shared_ptr<Watch> watch;
    Harbor::ComponentPtr<Harbor::IACNodeModifyEnum> modifications;
};

class Dispatcher : public std::enable_shared_from_this<Dispatcher> {
public:
    // Starts the thread, once. HRX if there is none to be had.
    void Run();
    // Ends every watch and drops all reports, once and after Run. The thread has ended when this returns, unless this
    // is the thread: it then ends on its own when the callback that led here has returned.
    void Stop() noexcept;

    void AddWatch(std::shared_ptr<Watch> watch);
    // WatchEnded if the watch has ended.
    [[nodiscard]] Harbor::HRESULT StartWatch(Watch& watch) noexcept;
    // Ends the watch of that subscription, and waits for its running callback unless this is the thread. 0x80070490 if
    // there is none or if it has ended already; the wait is the same.
    [[nodiscard]] Harbor::HRESULT EndWatch(const Harbor::IACModifySubscription* subscription) noexcept;
    // As EndWatch, and takes the watch out: its subscription is about to go.
    void ForgetWatch(const Watch& watch) noexcept;

    [[nodiscard]] std::vector<std::shared_ptr<Watch>> WatchesOf(std::u16string_view path, std::int64_t changes);
    // Puts the reports behind those that are waiting: all, or none if memory runs out.
    void Post(std::vector<PendingReport> reports);

private:
    void Serve() noexcept;
    void ServeOldest(Harbor::UniqueLock& lock);
    void WaitForCallback(const Watch& watch, Harbor::UniqueLock& lock) noexcept;

    Harbor::Thread thread_;
    std::shared_ptr<Dispatcher> self_;  // for the thread, which takes it

    Harbor::Lock lock_;  // guards all that follows
    Harbor::ConditionVariable workArrived_;
    Harbor::ConditionVariable reportServed_;
    std::vector<std::shared_ptr<Watch>> watches_;  // of the subscriptions that live
    std::deque<PendingReport> reports_;            // oldest first
    const Watch* served_ = nullptr;                // whose report is under way
    Platform::DWORD threadId_ = 0;                 // of the thread, once it runs
    bool stopping_ = false;
};

}  // namespace ConfigServer
