// The component that decides when: registration of schedules and of command points.
#pragma once

#include "DataCollection/ActionSubscription.h"

namespace DataCollection::ActionManagement {

// The class to create. Before it serves, it is configured through Harbor::IConfigurable with a node that has the
// 32-bit attribute "PollingIntervalInMilliseconds".
inline constexpr GUID ActionManagerClassId{
    0xBAD21ACC, 0x2805, 0x4DA8, {0xB9, 0xAF, 0xA4, 0x9C, 0xBD, 0xE1, 0x6D, 0x5A}};

enum class TimedActionType : std::int32_t {
    Repeat = 0,        // at the interval, counted from the moment of registration
    SpecificTime = 1,  // at a second of the day, and from there at the interval
};

// A schedule. Exactly one of the two intervals is not 0, and the interval stays below 2^32 ms (49.7 days). For
// SpecificTime an interval in seconds divides a day of 86400 s or is a multiple of it.
struct TimedActionSettings {
    std::uint32_t StartSeconds;  // SpecificTime: second of the day, below 86400
    bool IsLocalTime;            // SpecificTime: counts from local midnight, by the UTC offset at registration
    std::uint32_t IntervalSeconds;
    TimedActionType Type;
    std::uint32_t IntervalMilliseconds;
};

// A command point: the path "\Commands\ManagedObjectsDataCollectionCommand\<ParentName>\<LeafName>".
struct ForcedActionConfig {
    WideString LeafName;
    WideString ParentName;
    bool WithOptionBit0;  // sets bit 0 of the watch's options at the configuration service
};

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
