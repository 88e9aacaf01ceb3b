// The configuration service: what a client calls, what it implements, and the nodes that both sides exchange.
#pragma once

#include "Harbor/ComponentUnknown.h"
#include "NodeFabric/NodeFabric.h"

namespace Harbor {

// The name under which the broker of named instances holds the service.
inline constexpr WideChar ConfigServiceInstanceName[] = u"ConfigServer.Proxy";

// The filter of a watch: a node with the type `NodeType` and the three attributes below. All are required.
namespace WatchFilter {
inline constexpr WideChar NodeType[] = u"FilterByPath";
inline constexpr WideChar NodePath[] = u"NodePath";  // text: a full path, with a backslash before each element
inline constexpr WideChar IsParent[] = u"IsParent";  // boolean: true if only the nodes below the path are watched
inline constexpr WideChar MaxDepth[] = u"MaxDepth";  // 64-bit number: levels below the path that are watched
inline constexpr std::int64_t EveryLevel = 0x7FFFFFFF;
}  // namespace WatchFilter

// The parameters of a watch: a node with the name `NodeName` and the two attributes below. Both are required. The
// service defines the meaning of the bits.
namespace WatchParameters {
inline constexpr WideChar NodeName[] = u"SubscribeConfig";
inline constexpr WideChar ChangesMask[] = u"ChangesMask";  // 32-bit number: the kinds of change that are reported
inline constexpr std::int32_t AllChanges = 31;
inline constexpr WideChar SubscribeOptions[] = u"SubscribeOptions";  // 32-bit number
inline constexpr std::int32_t DefaultOptions = 6;
inline constexpr std::int32_t OptionBit0 = 1;  // added to the default if the client asks for it
}  // namespace WatchParameters

// The report of one change: a node with the two attributes below. Both are required. Its first child is the changed
// node. If the service cannot provide the changed node, there is no child.
namespace ChangeNotification {
inline constexpr WideChar ModifiedNodePath[] = u"ModifiedNodePath";  // text: the full path of the changed node
inline constexpr WideChar ChangesMask[] = u"ChangesMask";            // 64-bit number: the kinds of this change
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
    // Reports changes. `subscription` is the pointer that AddSubscription returned. The arguments are borrowed. The
    // service calls this on its own threads.
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
