// The configuration service: what a client calls, what it implements, and the nodes that both sides exchange.
//
// To write a service, implement IACConfigService, IACModifySubscription, IACNodeModifyEnum and IACNodeEnumerator, and
// publish the service at the broker under ConfigServiceInstanceName. The sample ConfigurationService.h does this.
//
// The action manager calls a service as follows. It looks the service up at the broker for each use and releases it
// afterwards.
//
// - SubscribeForcedAction calls AddSubscription and then Start of the new watch, on the client's thread.
// - In the second cycle after Unsubscribe, the worker calls RemoveSubscription and releases the watch. During
//   RemoveSubscription it holds the lock of the registrations, so the service must not wait there for a thread that
//   registers at the manager. It may wait for a report that is under way: a report never waits for that lock.
// - The end of the manager releases the other watches, without RemoveSubscription, on the thread of the last Release.
//
// A service returns codes. The manager treats an exception that leaves one of these functions like the code
// E_OUTOFMEMORY or E_UNEXPECTED.
#pragma once

#include "Harbor/ComponentUnknown.h"
#include "NodeFabric/NodeFabric.h"

namespace Harbor {

// The name under which the broker of named instances holds the service.
inline constexpr WideChar ConfigServiceInstanceName[] = u"ConfigServer.Proxy";

// The filter of a watch: a node without a name, with the type `NodeType` and the three attributes below. All are
// required. The comments give the types, with the constants of NodeFabric.h, and what the manager writes.
namespace WatchFilter {
inline constexpr WideChar NodeType[] = u"FilterByPath";
// AcnTypeWideText: a full path, with a backslash before each element. The manager writes the path of a command point.
inline constexpr WideChar NodePath[] = u"NodePath";
// AcnTypeBool: true if only the nodes below the path are watched. The manager writes false.
inline constexpr WideChar IsParent[] = u"IsParent";
// AcnTypeInt64: the number of levels below the path that are watched. The manager writes EveryLevel.
inline constexpr WideChar MaxDepth[] = u"MaxDepth";
inline constexpr std::int64_t EveryLevel = 0x7FFFFFFF;
}  // namespace WatchFilter

// The parameters of a watch: a node with the name `NodeName`, without a type, and with the two attributes below. Both
// are required. The service defines the meaning of the bits.
namespace WatchParameters {
inline constexpr WideChar NodeName[] = u"SubscribeConfig";
// AcnTypeInt32: the kinds of change that are reported. The manager writes AllChanges.
inline constexpr WideChar ChangesMask[] = u"ChangesMask";
inline constexpr std::int32_t AllChanges = 31;
// AcnTypeInt32. The manager writes DefaultOptions, and adds OptionBit0 if ForcedActionConfig::WithOptionBit0 is true.
inline constexpr WideChar SubscribeOptions[] = u"SubscribeOptions";
inline constexpr std::int32_t DefaultOptions = 6;
inline constexpr std::int32_t OptionBit0 = 1;
}  // namespace WatchParameters

// The notification of one change: a node with any name and the two attributes below. Both are required and have no
// default: a report with a notification that lacks one is refused, an ERR line names the attribute, and the
// notifications after it are not read. The first child is the changed node. If the service cannot provide the changed
// node, there is no child.
//
// Of the changed node the manager reads the attribute "Command" (AcnTypeWideText), which must be "Start" or "Stop", and
// nothing else. A changed node with another command, or without one, is logged and ignored.
namespace ChangeNotification {
// AcnTypeWideText: the full path of the changed node. The manager requires it but does not use its value.
inline constexpr WideChar ModifiedNodePath[] = u"ModifiedNodePath";
// AcnTypeInt64: the kinds of this change. The manager requires it but does not use its value.
inline constexpr WideChar ChangesMask[] = u"ChangesMask";
}  // namespace ChangeNotification

// Enumerates the notification nodes of one report. It is used on the thread that received the report.
struct IACNodeEnumerator : IComponentUnknown {
    // Makes Next continue with the first node.
    virtual HRESULT Reset() = 0;
    // Stores the next node and returns 0. The caller closes the handle. Any other code means that no node is left or
    // that the call failed; the two cannot be distinguished.
    virtual HRESULT Next(AcnHandle* node) = 0;

protected:
    ~IACNodeEnumerator() = default;
};

// One report.
struct IACNodeModifyEnum : IComponentUnknown {
    // Stores an enumerator with one reference.
    virtual HRESULT GetNodeEnumerator(IACNodeEnumerator** out) = 0;

protected:
    ~IACNodeModifyEnum() = default;
};

// A watch, as its client holds it.
struct IACModifySubscription : IComponentUnknown {
    // Starts the reports. No change is reported before this call.
    virtual HRESULT Start() = 0;

protected:
    ~IACModifySubscription() = default;
};

// Implemented by the client of a watch.
struct IACModifyCallback : IComponentUnknown {
    // Reports changes. `subscription` is the pointer that AddSubscription returned. `kind` is defined by the service;
    // the manager ignores it. The arguments are borrowed. The service calls this on any thread, but not inside a call
    // that the client makes to it. The manager only puts the commands into a queue and returns; its worker serves them
    // in its next cycle. A failure means that the report was refused: the service must not repeat it.
    virtual HRESULT OnTriggered(IACModifySubscription* subscription, int kind, IACNodeModifyEnum* modifications) = 0;

protected:
    ~IACModifyCallback() = default;
};

// The service. Any thread may call it.
struct IACConfigService : IComponentUnknown {
    static constexpr GUID Id{0xB3BE9604, 0x1352, 0x4DAB, {0xB4, 0x13, 0xD3, 0x77, 0x64, 0xC0, 0xCE, 0x97}};

    // Creates a watch and stores it with one reference. `filter` and `parameters` are borrowed for the call. The
    // service counts no reference to `callback`: it must live until the watch has ended.
    virtual HRESULT AddSubscription(AcnHandle filter, AcnHandle parameters, IACModifyCallback* callback,
                                    IACModifySubscription** subscription) = 0;
    // Ends a watch. The last Release of the subscription also ends it. After either call has returned, no report to the
    // callback is running and none follows.
    virtual HRESULT RemoveSubscription(IACModifySubscription* subscription) = 0;

protected:
    ~IACConfigService() = default;
};

}  // namespace Harbor
