#include "Dispatcher.h"

#include <algorithm>

#include "Common/Failures/CodeOfCall.h"
#include "Common/Logging/Log.h"
#include "ConfigServer/ConfigServer.h"
#include "Platform/Process.h"

namespace ConfigServer {

using namespace Harbor;

namespace {

void Deliver(const Watch& watch, IACNodeModifyEnum* modifications) noexcept {
    const auto call = [&] { return watch.callback->OnTriggered(watch.subscription, NodesModified, modifications); };
    // The log may also fail, which must not end the thread.
    (void)CodeOfCall([&] {
        const HRES result = HRES::Unchecked(CodeOfCall(call));
        if (result.Failed()) {
            LOG(Warn, u"A callback failed. IACModifySubscription: '" << watch.subscription << u"'. Reason: " << result);
        }
        return S_OK;
    });
}

}  // namespace

void Dispatcher::Run() {
    self_ = shared_from_this();
    if (const HRESULT code = thread_.Start<&Dispatcher::Serve>(this); Failed(code)) {
        self_.reset();
        ThrowError(code);
    }
}

void Dispatcher::Stop() noexcept {
    std::deque<PendingReport> dropped;
    bool onThread = false;
    {
        const LockGuard guard(lock_);
        stopping_ = true;
        for (const auto& watch : watches_) watch->state = Watch::State::Ended;
        dropped.swap(reports_);
        onThread = Platform::GetCurrentThreadId() == threadId_;
    }
    workArrived_.NotifyOne();
    if (onThread) {
        thread_.Detach();
    } else {
        thread_.Join();
    }
}

void Dispatcher::AddWatch(std::shared_ptr<Watch> watch) {
    WatchList added{std::move(watch)};
    const LockGuard guard(lock_);
    watchOf_.emplace(added.front()->subscription, added.begin());
    watches_.splice(watches_.end(), added);
}

HRESULT Dispatcher::StartWatch(Watch& watch) noexcept {
    const LockGuard guard(lock_);
    if (watch.state == Watch::State::Ended) return WatchEnded;
    watch.state = Watch::State::Started;
    return S_OK;
}

HRESULT Dispatcher::EndWatch(const IACModifySubscription* subscription) noexcept {
    UniqueLock lock(lock_);
    const auto found = watchOf_.find(subscription);
    if (found == watchOf_.end()) return NOT_FOUND;
    const std::shared_ptr<Watch> watch = *found->second;
    const auto stateBefore = std::exchange(watch->state, Watch::State::Ended);
    WaitForCallback(*watch, lock);
    return stateBefore != Watch::State::Ended ? S_OK : NOT_FOUND;
}

void Dispatcher::ForgetWatch(const Watch& watch) noexcept {
    UniqueLock lock(lock_);
    const auto found = watchOf_.find(watch.subscription);
    (*found->second)->state = Watch::State::Ended;
    watches_.erase(found->second);
    watchOf_.erase(found);
    WaitForCallback(watch, lock);
}

std::vector<std::shared_ptr<Watch>> Dispatcher::WatchesOf(std::u16string_view path, std::int64_t changes) {
    const LockGuard guard(lock_);
    std::vector<std::shared_ptr<Watch>> found;
    std::ranges::copy_if(watches_, std::back_inserter(found), [&](const auto& watch) {
        return watch->state == Watch::State::Started && watch->scope.Covers(path, changes);
    });
    return found;
}

void Dispatcher::Post(std::vector<PendingReport> reports) {
    {
        const LockGuard guard(lock_);
        reports_.insert(reports_.end(), std::move_iterator(reports.begin()), std::move_iterator(reports.end()));
    }
    workArrived_.NotifyOne();
}

void Dispatcher::Serve() noexcept {
    const std::shared_ptr<Dispatcher> self = std::move(self_);
    UniqueLock lock(lock_);
    threadId_ = Platform::GetCurrentThreadId();
    for (;;) {
        workArrived_.Wait(lock, [this] { return stopping_ || !reports_.empty(); });
        if (stopping_) return;
        ServeOldest(lock);
    }
}

void Dispatcher::ServeOldest(UniqueLock& lock) {
    PendingReport report = std::move(reports_.front());
    reports_.pop_front();
    const bool wanted = report.watch->state == Watch::State::Started;
    served_ = report.watch.get();
    lock.unlock();
    if (wanted) Deliver(*report.watch, report.modifications.Get());
    report.modifications.Reset();  // closes its nodes before waiting threads continue
    lock.lock();
    served_ = nullptr;
    reportServed_.NotifyAll();
}

void Dispatcher::WaitForCallback(const Watch& watch, UniqueLock& lock) noexcept {
    if (Platform::GetCurrentThreadId() == threadId_) return;
    reportServed_.Wait(lock, [&] { return served_ != &watch; });
}

}  // namespace ConfigServer
