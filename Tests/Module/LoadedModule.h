// The module as a host uses it: loaded by its path and called through its one export.
#pragma once

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <vector>

#include "Common/Base/HRes.h"
#include "Common/Base/Lock.h"
#include "Common/Base/Text.h"
#include "DataCollection/ActionManager.h"
#include "Harbor/ComponentPtr.h"
#include "Harbor/ComponentsModule.h"
#include "Harbor/Configurable.h"
#include "Platform/Modules.h"
#include "Platform/Process.h"
#include "Support/JoiningThread.h"
#include "Support/ScopedVariable.h"
#include "Support/StoreFixture.h"
#include "Support/TemporaryDirectory.h"

using namespace Harbor;
using namespace DataCollection;
using namespace DataCollection::ActionManagement;

using ManagerPtr = ComponentPtr<IActionManager>;
using SubscriptionPtr = ComponentPtr<IActionSubscription>;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool Sanitized = true;
#else
inline constexpr bool Sanitized = false;
#endif

// Waits for a condition. Returns false if it does not become true within a minute.
template <class Condition>
[[nodiscard]] bool Await(Condition condition) {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds{60};
    while (!condition()) {
        if (std::chrono::steady_clock::now() > giveUp) return false;
        Platform::Sleep(1);
    }
    return true;
}

inline std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// All texts of the module are ASCII.
inline std::string Narrow(std::u16string_view text) {
    return {text.begin(), text.end()};
}

inline std::size_t CountOf(std::string_view part, std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != text.npos; ++at) ++count;
    return count;
}

// Loads the module with its own log directory, and checks that it is unmapped at the end. Without a severity the
// settings files decide.
class LoadedModule {
public:
    explicit LoadedModule(const std::optional<std::string>& maxSeverity = "NONE")
        : maxSeverity_("GS_Logger_MaxSeverity", maxSeverity), logPath_("GS_Logger_Path", directory_.Path().string()) {
        EXPECT_FALSE(IsLoaded());
        library_ = Platform::LoadLibraryExW(FromUtf8(ORV_MODULE_PATH).c_str(), nullptr, 0);
        if (library_ == nullptr) throw std::runtime_error("The module cannot be loaded");
        const auto getObject = reinterpret_cast<GetComponentsModuleObjectFunction>(
            Platform::GetProcAddress(library_, GetComponentsModuleObjectName));
        placeOfCode_ = reinterpret_cast<const WideChar*>(getObject);
        EXPECT_EQ(getObject(nullptr), E_INVALIDARG);
        EXPECT_EQ(getObject(&object_), S_OK);
        EXPECT_EQ(LiveObjects(), 0u);
    }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;
    ~LoadedModule() { Unload(); }

    void Unload() {
        if (object_ == nullptr) return;
        EXPECT_EQ(LiveObjects(), 0u);
        object_ = nullptr;
        EXPECT_TRUE(Platform::FreeLibrary(library_));
        EXPECT_FALSE(IsLoaded());
    }

    // Whether anything is mapped where the code of the module was when it was loaded last.
    static bool IsLoaded() {
        constexpr Platform::DWORD flags =
            Platform::GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | Platform::GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
        Platform::HMODULE found = nullptr;
        return placeOfCode_ != nullptr && Platform::GetModuleHandleExW(flags, placeOfCode_, &found);
    }

    IComponentsModule* operator->() const { return object_; }
    IComponentsModule* Object() const { return object_; }

    std::uint32_t LiveObjects() const {
        object_->LockModule();
        return object_->UnlockModule();
    }

    template <class I = IActionManager>
    ComponentPtr<I> Create(const GUID& classId = ActionManagerClassId) const {
        void* created = nullptr;
        EXPECT_EQ(object_->CreateInstance(&classId, &I::Id, &created), S_OK);
        return ComponentPtr<I>::Attach(static_cast<I*>(created));
    }

    std::filesystem::path LogFile() const { return directory_ / "OrvActionManager.log"; }
    std::string Log() const {
        const std::string bytes = ReadFile(LogFile());
        std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
        bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(char16_t));
        return Narrow(text);
    }

private:
    const TemporaryDirectory directory_;
    const ScopedVariable maxSeverity_, logPath_;
    static inline const WideChar* placeOfCode_ = nullptr;
    Platform::HMODULE library_ = nullptr;
    IComponentsModule* object_ = nullptr;
};

inline HRESULT Configure(const ManagerPtr& manager, std::uint32_t pollingIntervalMs) {
    const NodePtr node = NewNode(u"ActionManager");
    EXPECT_EQ(AcnSetAttribute(node.get(), u"PollingIntervalInMilliseconds", AcnTypeUInt32, &pollingIntervalMs,
                              sizeof(pollingIntervalMs)),
              S_OK);
    return QueryOrThrow<IConfigurable>(manager)->Configure(node.get());
}

constexpr TimedActionSettings Every(std::uint32_t milliseconds) {
    return {0, false, 0, TimedActionType::Repeat, milliseconds};
}

// A client's listener: records the name of each action and runs the test's action. The test owns it; it counts the
// references that others hold.
class Listener final : public IActionListener {
public:
    std::uint32_t AddRef() override { return ++references_; }
    std::uint32_t Release() override { return --references_; }
    HRESULT QueryInterface(const GUID*, void**) override { return E_NOINTERFACE; }
    HRESULT OnActionTriggered(IActionSubscription* subscription, IAction* action) override {
        WideString name;
        EXPECT_EQ(action->GetName(&name), S_OK);
        {
            const LockGuard guard(lock_);
            names_.push_back(Narrow(name));
        }
        ++calls_;
        if (onCall) onCall(*subscription, *action);
        return E_FAIL;  // no caller reads it
    }

    std::vector<std::string> Names() const {
        const LockGuard guard(lock_);
        return names_;
    }
    // Without a lock: a condition of the controlled scheduler must not take one.
    std::size_t Calls() const noexcept { return calls_; }
    [[nodiscard]] bool AwaitCalls(std::size_t count) const {
        return Await([&] { return Names().size() >= count; });
    }
    std::vector<std::string> TakeNames() {
        const LockGuard guard(lock_);
        return std::exchange(names_, {});
    }
    // Waits until no other object holds a reference.
    [[nodiscard]] bool AwaitDetached() const {
        return Await([&] { return references_ == 0; });
    }

    std::function<void(IActionSubscription&, IAction&)> onCall;

private:
    std::atomic<std::uint32_t> references_{0};
    std::atomic<std::size_t> calls_{0};
    mutable Lock lock_;
    std::vector<std::string> names_;
};

inline SubscriptionPtr Subscribe(const ManagerPtr& manager, Listener& listener, const TimedActionSettings& schedule) {
    SubscriptionPtr subscription;
    EXPECT_EQ(manager->SubscribeRegularAction(&listener, &schedule, subscription.Address()), S_OK);
    return subscription;
}
