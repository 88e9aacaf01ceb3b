// Is called every 200 ms, and ends after five calls.
#include <cstdio>
#include <latch>

#include "DataCollection/CreateActionManager.h"
#include "Harbor/Object.h"

using namespace DataCollection::ActionManagement;

// The worker of the manager calls it.
class Counter final : public Harbor::Object<IActionListener> {
public:
    void WaitForFiveCalls() const { calls_.wait(); }

    Harbor::HRESULT OnActionTriggered(IActionSubscription*, DataCollection::IAction*) noexcept override {
        if (number_ == 5) return Harbor::S_OK;
        std::printf("call %d\n", ++number_);
        calls_.count_down();
        return Harbor::S_OK;
    }

private:
    int number_ = 0;
    std::latch calls_{5};
};

int main(int argc, char** argv) try {
    if (argc != 2) return std::fprintf(stderr, "usage: RegularAction /path/to/OrvActionManager.so\n"), 2;
    const Harbor::Module module = Harbor::Module::Load(argv[1]);
    const auto counter = Harbor::MakeObject<Counter>();
    const auto manager = CreateActionManager(module, 10);

    const TimedActionSettings everyFifthOfASecond{.IntervalMilliseconds = 200};
    Harbor::ComponentPtr<IActionSubscription> subscription;
    Harbor::ThrowIfFailed(manager->SubscribeRegularAction(counter.Get(), &everyFifthOfASecond, subscription.Address()),
                          "SubscribeRegularAction");
    Harbor::ThrowIfFailed(subscription->Start(), "Start");  // from now on the listener is called

    counter->WaitForFiveCalls();
    return subscription->Unsubscribe();  // then the manager's last Release ends the worker, and the module is unloaded
} catch (const std::exception& failure) {
    return std::fprintf(stderr, "%s\n", failure.what()), 1;
}
