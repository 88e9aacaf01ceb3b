// The action manager: registration of listeners for schedules and for command points.
#pragma once

#include "DataCollection/ActionSubscription.h"
#include "DataCollection/ForcedActionConfig.h"
#include "DataCollection/TimedActionSettings.h"

namespace DataCollection::ActionManagement {

// The class of the manager. A new manager calls no listener until it is configured, through Harbor::IConfigurable, with
// a node that has the attribute PollingIntervalAttribute. CreateActionManager (CreateActionManager.h) does both.
//
// Only the first Configure has an effect; every later one returns S_OK and does nothing. So a manager whose first
// Configure failed remains without a worker: release it and create another one. Configure fails with E_FAIL for a null
// node, with NOT_FOUND if the attribute is missing, and with DATATYPE_MISMATCH or another code of the node store if it
// cannot be read as a 32-bit number.
inline constexpr GUID ActionManagerClassId{
    0xBAD21ACC, 0x2805, 0x4DA8, {0xB9, 0xAF, 0xA4, 0x9C, 0xBD, 0xE1, 0x6D, 0x5A}};

// The pause of the worker between two checks, in milliseconds: an attribute of the type AcnTypeUInt32.
inline constexpr Harbor::WideChar PollingIntervalAttribute[] = u"PollingIntervalInMilliseconds";

// Any thread may call these functions, also from inside a call to a listener.
//
// On success both functions store a subscription with one reference, which the caller releases; on failure they store
// nothing. The listener is not called before Start of the subscription. The subscription counts a reference to the
// listener. The record (`schedule`, `config`) must not be null and is used only during the call. If memory runs out,
// std::bad_alloc may be thrown.
struct IActionManager : Harbor::IComponentUnknown {
    static constexpr GUID Id{0xBE6B7491, 0xD5F0, 0x4048, {0x9E, 0xED, 0xD3, 0x9D, 0xCD, 0x3A, 0x80, 0x19}};

    // Returns E_POINTER for a null listener or subscription, and E_INVALIDARG for a schedule that breaks a rule of
    // TimedActionSettings.
    virtual HRESULT SubscribeRegularAction(IActionListener* listener, const TimedActionSettings* schedule,
                                           IActionSubscription** subscription) = 0;
    // Returns E_POINTER as above. If a call to the broker or to the configuration service fails, returns its code.
    virtual HRESULT SubscribeForcedAction(IActionListener* listener, const ForcedActionConfig* config,
                                          IActionSubscription** subscription) = 0;
    virtual ~IActionManager() = default;
};

}  // namespace DataCollection::ActionManagement
