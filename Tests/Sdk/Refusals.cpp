// Prints how the SDK reports what the module refuses, and what remains in use when a Module ends.
#include <cstdio>
#include <new>

#include "DataCollection/CreateActionManager.h"
#include "Harbor/Object.h"

using namespace DataCollection::ActionManagement;
using Harbor::HRESULT;

namespace {

class Listener final : public Harbor::Object<IActionListener, Harbor::IConfigurable> {
public:
    ~Listener() override { std::puts("the listener is deleted"); }
    HRESULT OnActionTriggered(IActionSubscription*, DataCollection::IAction*) override { return Harbor::S_OK; }
    HRESULT Configure(AcnHandle) override { return Harbor::S_FALSE; }

private:
    void FinalRelease() noexcept override { std::printf("at the end %u references are added\n", AddRef() - Release()); }
};

template <class Call>
void Report(Call call) {
    try {
        call();
        std::puts("accepted");
    } catch (const Harbor::Failure& failure) {
        std::printf("%s (%08X)\n", failure.what(), static_cast<unsigned>(failure.Code()));
    }
}

}  // namespace

int main(int, char** argv) {
    Report([] { (void)Harbor::Module::Load("/missing.so"); });
    Harbor::ComponentPtr<IActionManager> survivor;
    const auto listener = Harbor::MakeObject<Listener>();
    Harbor::ComponentPtr<IActionSubscription> subscription;
    const auto subscribe = [&](const TimedActionSettings& schedule) {
        Harbor::ThrowIfFailed(survivor->SubscribeRegularAction(listener.Get(), &schedule, subscription.Address()),
                              "SubscribeRegularAction");
    };
    {
        const Harbor::Module module = Harbor::Module::Load(argv[1]);
        survivor = CreateActionManager(module, 10);
        Report([&] { subscribe({}); });
        Report([&] { subscribe({.IntervalSeconds = 7, .Type = TimedActionType::SpecificTime}); });
        const ForcedActionConfig point{.LeafName = u"Line1", .ParentName = u"Plant"};
        Report([&] {
            Harbor::ThrowIfFailed(survivor->SubscribeForcedAction(listener.Get(), &point, subscription.Address()),
                                  "SubscribeForcedAction");
        });
        Report([&] { (void)Harbor::Create<IActionManager>(module, Harbor::IConfigurable::Id); });
        Report([&] { (void)Harbor::GetInt64(Harbor::NewNode(u"Node").get(), u"Missing"); });
    }
    Report([&] { subscribe({.IntervalSeconds = 1}); });  // the library is still loaded
    subscription.Reset();
    survivor.Reset();

    Harbor::ComponentPtr<Harbor::IConfigurable> configurable;
    Report([&] { Harbor::ThrowIfFailed(listener.QueryTo(configurable), "QueryTo"); });
    Report([&] { Harbor::ThrowIfFailed(listener.QueryTo(subscription), "QueryTo"); });
    Report([] { Harbor::ThrowIfFailed(Harbor::CodeOf([]() -> HRESULT { throw std::bad_alloc(); }), "CodeOf"); });
    std::printf("%s; %s\n", Harbor::ErrorText(Harbor::S_OK).c_str(),
                Harbor::ErrorText(static_cast<HRESULT>(0x80040201)).c_str());
}
