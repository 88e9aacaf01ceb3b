// An action: what a listener is told about.
#pragma once

#include "Harbor/ComponentUnknown.h"

namespace DataCollection {

using Harbor::GUID;
using Harbor::HRESULT;
using Harbor::WideString;

// The types that IAction::GetType gives, with the names beside them.
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

// What a listener sees. Both give E_UNEXPECTED and write nothing while the action has no name.
struct IAction : Harbor::IComponentUnknown {
    static constexpr GUID Id{0x2DCDD284, 0x1529, 0x4AD8, {0xB9, 0x89, 0xAC, 0x31, 0xEA, 0x82, 0xFC, 0x95}};

    virtual HRESULT GetType(GUID* type) = 0;
    virtual HRESULT GetName(WideString* name) = 0;
};

// What the module itself uses.
struct IActionControl : Harbor::IComponentUnknown {
    static constexpr GUID Id{0x7C98DB43, 0x5C95, 0x4986, {0x85, 0xC1, 0xC7, 0xFB, 0xF1, 0x41, 0xA0, 0x02}};

    // E_INVALIDARG, and nothing stored, for an empty name or an all-zero type.
    virtual HRESULT SetNameAndType(const WideString& name, const GUID& type) = 0;
    // Writes true while no subscription is attached.
    virtual HRESULT IsDisposed(bool* disposed) = 0;
    virtual HRESULT OnSubscriptionAttached() = 0;
    virtual HRESULT OnSubscriptionDisposed() = 0;
    // The mark that waits for delivery: a flag, not a count.
    virtual HRESULT SetTriggered(bool triggered) = 0;
    virtual HRESULT GetTriggered(bool* triggered) = 0;
};

}  // namespace DataCollection
