#include <atomic>

#include "Platform/Errors.h"
#include "Platform/Process.h"
#include "Subsystems/ActionManager/GlobalSettings.h"
#include "Support/JoiningThread.h"
#include "TestSupport.h"

namespace {

class Manager : public ManagerTest {
protected:
    Manager() { System.clock = TimePoint{}; }
};

}  // namespace

TEST_F(Manager, IsConfiguredOnce) {
    const int threadsBefore = System.threadsAsked;
    EXPECT_EQ(manager_->Configure(Configuration(0xFFFFFFFF).Handle()), S_OK);
    EXPECT_EQ(manager_->Configure(Configuration(7).Handle()), S_OK);
    EXPECT_EQ(manager_->Configure(nullptr), S_OK);
    EXPECT_EQ(GlobalSettings::Instance()->PollingIntervalInMilliseconds(), 0xFFFFFFFFu);
    EXPECT_EQ(System.threadsAsked, threadsBefore + 1);
}

TEST_F(Manager, StartsNoWorkerWhenItsConfigurationFails) {
    ACNode none, without, wrongType;
    without.Create(u"ActionManager", nullptr);
    wrongType.Create(u"ActionManager", nullptr);
    wrongType.SetText(IntervalName, u"500", MeasureText);
    const ACNode good = Configuration(10);
    const std::string failed = "ERR DataCollection::ActionManagement::ActionManager::Configure failed: ";
    const struct {
        const ACNode& node;
        Platform::DWORD threadRefusal;
        HRESULT code;
        Texts lines;
    } table[] = {
        {none, 0, E_FAIL, {"ERR ActionManager configuration is NULL", failed + "0x80004005 *"}},
        {without, 0, NOT_FOUND, {failed + "0x80070490 *"}},
        {wrongType, 0, DATATYPE_MISMATCH, {failed + "0x8007065D *"}},
        {good, Platform::ERROR_MAX_THRDS_REACHED, HResultFromWin32(164), {failed + "0x800700A4 *"}},
        {good, Platform::ERROR_NOT_ENOUGH_MEMORY, E_OUTOFMEMORY, {failed + "0x8007000E *"}},
        {good, Platform::ERROR_ACCESS_DENIED, HResultFromWin32(5), {failed + "0x80070005 *"}},
    };
    for (const auto& row : table) {
        const std::uint32_t interval = GlobalSettings::Instance()->PollingIntervalInMilliseconds();
        CapturedLog log("ERR");
        manager_ = NewObject<ActionManager>();
        System.threadRefusal = row.threadRefusal;
        EXPECT_EQ(manager_->Configure(row.node.Handle()), row.code);
        EXPECT_TRUE(log.Wrote(row.lines));
        EXPECT_EQ(GlobalSettings::Instance()->PollingIntervalInMilliseconds(), row.threadRefusal != 0 ? 10u : interval);

        System.threadRefusal = 0;
        const int threadsBefore = System.threadsAsked;
        EXPECT_EQ(manager_->Configure(good.Handle()), S_OK);
        EXPECT_EQ(System.threadsAsked, threadsBefore);
        SubscribeAndStart(listener_);
    }
}

TEST_F(Manager, EndsOnlyAfterTheRunningCycle) {
    const ListenerPtr last = NewObject<RecordingListener>();
    std::atomic<bool> releasing{false}, left{false};
    listener_->onCall = [&](IActionSubscription&) {
        while (!releasing) Platform::Sleep(0);
        Platform::Sleep(0);
        left = true;
        return S_OK;
    };
    System.clock = Creation;
    const SubscriptionPtr first = SubscribeAndStart(listener_), second = SubscribeAndStart(last);
    System.clock = Creation + 1s + Ticks{1};
    EXPECT_EQ(manager_->Configure(Configuration(1).Handle()), S_OK);
    listener_->WaitForCalls(1);
    releasing = true;
    manager_.Reset();
    EXPECT_TRUE(left);
    EXPECT_EQ(last->TakeCalls(), Texts{"Schedule"});
}

TEST_F(Manager, ServesClientsOnSeveralThreads) {
    const std::uint32_t before = LivingObjects();
    EXPECT_EQ(manager_->Configure(Configuration(0).Handle()), S_OK);
    const auto client = [&] {
        for (int i = 0; i < 300; ++i) {
            const ListenerPtr listener = NewObject<RecordingListener>();
            if (i % 3 == 0) {
                listener->onCall = [this](IActionSubscription&) {
                    return SubscribeAndStart(NewObject<RecordingListener>())->Unsubscribe();
                };
            }
            const SubscriptionPtr subscription = SubscribeAndStart(listener);
            if (i % 5 == 0) listener->WaitForCalls(1);
            subscription->Unsubscribe();
        }
    };
    { const JoiningThread one(client), two(client); }
    while (LivingObjects() != before) Platform::Sleep(0);
}
