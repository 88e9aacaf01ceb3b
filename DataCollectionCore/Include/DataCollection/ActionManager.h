// The component that decides when: registration of schedules and of command points.
#pragma once

#include "DataCollection/ActionSubscription.h"
#include "DataCollection/ForcedActionConfig.h"
#include "DataCollection/TimedActionSettings.h"

namespace DataCollection::ActionManagement {

// The class to create. Before it serves, it is configured through Harbor::IConfigurable with a node that has the
// 32-bit attribute "PollingIntervalInMilliseconds".
inline constexpr GUID ActionManagerClassId{
    0xBAD21ACC, 0x2805, 0x4DA8, {0xB9, 0xAF, 0xA4, 0x9C, 0xBD, 0xE1, 0x6D, 0x5A}};

// Any thread may call it, a listener too. The result carries one reference and delivers nothing before its Start; it
// is written on success alone. The records must not be null.
struct IActionManager : Harbor::IComponentUnknown {
    static constexpr GUID Id{0xBE6B7491, 0xD5F0, 0x4048, {0x9E, 0xED, 0xD3, 0x9D, 0xCD, 0x3A, 0x80, 0x19}};

    // E_POINTER for a null listener or subscription, E_INVALIDARG for a schedule that breaks a rule above.
    virtual HRESULT SubscribeRegularAction(IActionListener* listener, const TimedActionSettings* schedule,
                                           IActionSubscription** subscription) = 0;
    // E_POINTER as above, else what the broker or the configuration service answers.
    virtual HRESULT SubscribeForcedAction(IActionListener* listener, const ForcedActionConfig* config,
                                          IActionSubscription** subscription) = 0;
    virtual ~IActionManager() = default;
};

}  // namespace DataCollection::ActionManagement
