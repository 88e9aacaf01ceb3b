// Lets each call of the node store fail in turn: the first, the second, and so on until an operation needs no more.
#include <dlfcn.h>

#include "Subsystems/ActionManager/ScopeItemUpdateStrategy.h"
#include "TestSupport.h"

namespace {

constexpr HRESULT Injected = MakeHResult(0x80041234);
thread_local int CallsToFailure = 0;  // 0: none fails

bool FailsNow() {
    return CallsToFailure > 0 && --CallsToFailure == 0;
}

}  // namespace

#define MAY_FAIL(name, parameters, arguments)                                                \
    extern "C" HRESULT name parameters {                                                     \
        static const auto real = reinterpret_cast<decltype(&name)>(dlsym(RTLD_NEXT, #name)); \
        return FailsNow() ? Injected : real arguments;                                       \
    }

MAY_FAIL(AcnCreateNode, (const WideChar* name, const WideChar* type, AcnHandle* out), (name, type, out))
MAY_FAIL(AcnDuplicateNodeHandle, (AcnHandle node, AcnHandle* out), (node, out))
MAY_FAIL(AcnCloneNode, (AcnHandle node, std::uint32_t depth, std::uint32_t flags, AcnHandle* out),
         (node, depth, flags, out))
MAY_FAIL(AcnGetParent, (AcnHandle node, AcnHandle* out), (node, out))
MAY_FAIL(AcnGetChildCount, (AcnHandle node, std::uint64_t* out), (node, out))
MAY_FAIL(AcnGetChildByIndex, (AcnHandle node, std::uint64_t index, AcnHandle* out), (node, index, out))
MAY_FAIL(AcnGetChildByName, (AcnHandle node, const WideChar* name, AcnHandle* out), (node, name, out))
MAY_FAIL(AcnGetNodeName, (AcnHandle node, std::uint32_t kind, WideChar* buffer, std::uint32_t* size),
         (node, kind, buffer, size))
MAY_FAIL(AcnGetNodeType, (AcnHandle node, WideChar* buffer, std::uint32_t* size), (node, buffer, size))
MAY_FAIL(AcnGetAttributeNames, (AcnHandle node, WideChar* buffer, std::uint32_t* size), (node, buffer, size))
MAY_FAIL(AcnGetAttribute,
         (AcnHandle node, const WideChar* name, const std::uint16_t* type, void* buffer, std::uint32_t* size,
          std::uint16_t* outType),
         (node, name, type, buffer, size, outType))
MAY_FAIL(AcnSetAttribute,
         (AcnHandle node, const WideChar* name, std::uint16_t type, const void* value, std::uint32_t size),
         (node, name, type, value, size))
MAY_FAIL(AcnStartSerialization,
         (std::int32_t kind, std::uint32_t flags, AcnSerializationCallback callback, void* user, AcnContext* out),
         (kind, flags, callback, user, out))
MAY_FAIL(AcnSerializeNodes, (AcnContext context, const AcnHandle* nodes, std::uint32_t count, std::uint32_t depth),
         (context, nodes, count, depth))
MAY_FAIL(AcnFinalizeSerialization, (AcnContext context), (context))

namespace {

// Reports one node again and again: each walk finds it once.
class OneNodeReport : public ComponentRoot, public IACNodeModifyEnum, public IACNodeEnumerator {
public:
    static constexpr const char* Tag = "OneNodeReport";
    using Queryable = InterfaceList<IACNodeModifyEnum>;

    HRESULT GetNodeEnumerator(IACNodeEnumerator** out) override {
        *out = ComponentPtr<IACNodeEnumerator>(this, false).Detach();
        return S_OK;
    }
    HRESULT Reset() override {
        atEnd_ = false;
        return S_OK;
    }
    HRESULT Next(AcnHandle* out) override {
        return std::exchange(atEnd_, true) ? S_FALSE : AcnDuplicateNodeHandle(node.Handle(), out);
    }

    ACNode node;

private:
    bool atEnd_ = false;
};

class StoreFailures : public ManagerTest {
protected:
    // An operation may do without what the store refused, or fail with its code; it leaves nothing behind, and succeeds
    // when it is asked again.
    static void FailAtEachCall(HRESULT success, const std::function<HRESULT()>& operation) {
        std::uint64_t handlesBefore = 0, handles = 0;
        EXPECT_EQ(AcnGetOpenHandleCount(&handlesBefore), S_OK);
        int failures = 0;
        for (CallsToFailure = 1;; CallsToFailure = failures + 1) {
            const HRESULT code = operation();
            EXPECT_EQ(AcnGetOpenHandleCount(&handles), S_OK);
            EXPECT_EQ(handles, handlesBefore) << "call " << failures + 1;
            if (std::exchange(CallsToFailure, 0) != 0) {
                EXPECT_EQ(code, success);
                break;
            }
            ++failures;
            EXPECT_TRUE(code == Injected || Succeeded(code)) << "call " << failures << ": " << std::hex << code;
            EXPECT_EQ(operation(), success) << "after the failure of call " << failures;
        }
        EXPECT_GT(failures, 2);
    }

    static ACNode Item(std::int32_t value) {
        ACNode root, items, item, child;
        root.Create(u"Root", nullptr);
        items.Create(u"ScopeItems", nullptr);
        item.Create(u"item", nullptr);
        child.Create(u"child", nullptr);
        child.SetInt32(u"value", value);
        child.SetText(u"text", u"text", MeasureText);
        EXPECT_EQ(AcnAppendChild(item.Handle(), child.Handle()), S_OK);
        EXPECT_EQ(AcnAppendChild(items.Handle(), item.Handle()), S_OK);
        EXPECT_EQ(AcnAppendChild(root.Handle(), items.Handle()), S_OK);
        return root;
    }

    CapturedLog log_{"DBG"};  // so that nodes are dumped too
};

}  // namespace

TEST_F(StoreFailures, LeaveAComparisonWithACodeAndNoOpenHandle) {
    const auto strategy = Create<ScopeItemUpdateStrategy, ITriggerStrategy>();
    const ACNode before = Item(1), same = Item(1), changed = Item(2);
    FailAtEachCall(S_FALSE, [&] { return strategy->OnConfigurationUpdate(before.Handle(), same.Handle()); });
    FailAtEachCall(S_OK, [&] { return strategy->OnConfigurationUpdate(before.Handle(), changed.Handle()); });
}

TEST_F(StoreFailures, LeaveAManagerUnconfigured) {
    ACNode config;
    config.Create(nullptr, nullptr);
    const std::uint32_t interval = 100'000;
    EXPECT_EQ(AcnSetAttribute(config.Handle(), u"PollingIntervalInMilliseconds", AcnTypeUInt32, &interval, 4), S_OK);
    FailAtEachCall(S_OK, [&] { return NewObject<ActionManager>()->Configure(config.Handle()); });
}

TEST_F(StoreFailures, LoseTheCommandsOfTheirReportAlone) {
    ACNode command;
    command.Create(u"B", nullptr);
    command.SetText(u"Command", u"Start", MeasureText);
    const auto report = NewObject<OneNodeReport>();
    report->node.Create(nullptr, nullptr);
    report->node.SetText(u"ModifiedNodePath", u"\\A\\B", MeasureText);
    report->node.SetInt64(u"ChangesMask", 1);
    EXPECT_EQ(AcnAppendChild(report->node.Handle(), command.Handle()), S_OK);
    FailAtEachCall(S_OK, [&] {
        const HRESULT code = manager_->OnTriggered(nullptr, 0, report.Get());
        const int callsToFailure = std::exchange(CallsToFailure, 0);
        Cycle();  // takes what was posted from the queue
        CallsToFailure = callsToFailure;
        return code;
    });
}
