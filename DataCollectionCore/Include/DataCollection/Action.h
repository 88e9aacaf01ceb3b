// An action: the reason for a call to a listener.
#pragma once

#include "Harbor/ComponentUnknown.h"

namespace DataCollection {

using Harbor::GUID;
using Harbor::HRESULT;
using Harbor::WideString;

// The types that IAction::GetType stores. Each comment has the name that IAction::GetName stores.
inline constexpr GUID ScheduleActionType{// "Schedule"
                                         0x2499B637,
                                         0xF51F,
                                         0x44EF,
                                         {0x8A, 0x1E, 0x2E, 0x05, 0x0A, 0xE1, 0xD0, 0x37}};
inline constexpr GUID ForcedStartActionType{// "ForcedStart"
                                            0x4DFD3238,
                                            0xE4EF,
                                            0x4D0D,
                                            {0xA2, 0xE7, 0xA5, 0x2C, 0xAA, 0x93, 0x91, 0x10}};
inline constexpr GUID ForcedStopActionType{// "ForcedStop"
                                           0xD152D3FF,
                                           0x88C9,
                                           0x4CCD,
                                           {0xBF, 0xF9, 0x74, 0x2C, 0xD0, 0x6B, 0x84, 0x6B}};

// An action, as a listener uses it. While the action has no name, both functions return E_UNEXPECTED and store nothing.
struct IAction : Harbor::IComponentUnknown {
    static constexpr GUID Id{0x2DCDD284, 0x1529, 0x4AD8, {0xB9, 0x89, 0xAC, 0x31, 0xEA, 0x82, 0xFC, 0x95}};

    virtual HRESULT GetType(GUID* type) = 0;
    virtual HRESULT GetName(WideString* name) = 0;

protected:
    ~IAction() = default;
};

// An action, as the manager and the subscriptions use it.
struct IActionControl : Harbor::IComponentUnknown {
    static constexpr GUID Id{0x7C98DB43, 0x5C95, 0x4986, {0x85, 0xC1, 0xC7, 0xFB, 0xF1, 0x41, 0xA0, 0x02}};

    // Returns E_INVALIDARG and stores nothing if the name is empty or the type is all zero.
    virtual HRESULT SetNameAndType(const WideString& name, const GUID& type) = 0;
    // Stores whether no subscription is attached.
    virtual HRESULT IsDisposed(bool* disposed) = 0;
    // A subscription calls these when it attaches to the action and when it detaches from it.
    virtual HRESULT OnSubscriptionAttached() = 0;
    virtual HRESULT OnSubscriptionDisposed() = 0;
    // Set and read the mark: whether the listener must be called for the action. The mark is a flag, not a count.
    virtual HRESULT SetTriggered(bool triggered) = 0;
    virtual HRESULT GetTriggered(bool* triggered) = 0;

protected:
    ~IActionControl() = default;
};

}  // namespace DataCollection
