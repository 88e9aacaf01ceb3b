// A configuration service: its host writes a tree of nodes, and the service reports the changes to its subscribers.
//
//     const auto tree = ConfigServer::CreateConfigServer();
//     Harbor::ThrowIfFailed(MBSetNamedInstance(Harbor::ConfigServiceInstanceName, tree.Get()), "MBSetNamedInstance");
//     Harbor::ThrowIfFailed(tree->WriteNode(u"\\Commands\\Parent\\Leaf\\Command1", {{u"Command", u"Start"}}), "Write");
//
// The object also implements IACConfigService. Any thread may call any operation at any time, also from a callback. No
// operation throws; if memory runs out, the code is E_OUTOFMEMORY.
//
// Watches. The attribute NodePath of the filter is the path of the watched node, with a backslash before each element.
// Elements are compared exactly. A watch covers the node and at most MaxDepth levels below it. If IsParent is not 0,
// the node itself is not covered, only the levels below it. The attribute ChangesMask of the parameters selects kinds
// of changes by the bits below. SubscribeOptions must exist but has no effect. AddSubscription returns 0x80070490 for a
// missing attribute, 0x8007065D for one of the wrong type, E_INVALIDARG for an invalid path or a negative depth,
// E_POINTER if the callback or the result is null. It reads the two nodes and does not keep them.
//
// Reports. Each write is reported to each subscription that was started before and covers the path: once, in the order
// of the writes, on the one thread of the service. The enumerator returns one notification node, then S_FALSE. The node
// belongs to the receiver. Its one child is a snapshot of the written node with everything below it, which reports the
// full path of the original. An enumerator may be kept, but only one thread at a time may use it. If a callback fails
// or throws, that is logged and has no other effect.
//
// The end of a watch. A subscription ends with RemoveSubscription, with its last Release, or with the service.
// RemoveSubscription and the last Release wait for a running callback of the subscription. After they have returned, it
// is not called again. So their caller must not hold a lock that its callback acquires. On the thread of the service
// they do not wait: a callback that ends its own subscription is the last one. RemoveSubscription returns 0x80070490 if
// the subscription is unknown or has already ended, E_POINTER if it is null. Start returns WatchEnded if the
// subscription has ended.
//
// The subscription that a callback receives is valid during the call. The callback may call AddRef and Release on it in
// pairs, even while the last Release of the client waits. It must not keep the pointer longer than the client.
//
// The end of the service. Its last Release drops pending reports and waits for a running callback. If a callback makes
// the last Release, it does not wait, and the thread of the service ends after that callback has returned.
#pragma once

#include <string_view>
#include <vector>

#include "Harbor/ComponentPtr.h"
#include "Harbor/ConfigService.h"

namespace ConfigServer {

// The subscription has ended. This code is in the range that interfaces define for themselves; its text is in
// SharedFaultTexts.dll.
inline constexpr Harbor::HRESULT WatchEnded = Harbor::MakeHResult(0x80040201);

// The bits of ChangesMask in a report and in the parameters of a watch.
inline constexpr std::int64_t AttributesWritten = 1;
inline constexpr std::int64_t NodeAdded = 2;  // the written node did not exist before

// The `kind` of OnTriggered: nodes were modified. There is no other kind.
inline constexpr int NodesModified = 1;

struct TextAttribute {
    Harbor::WideString name;
    Harbor::WideString value;
};

struct IConfigTree : Harbor::IComponentUnknown {
    static constexpr Harbor::GUID Id{0x672C6ABF, 0x7FEE, 0x448B, {0x8E, 0x2A, 0xDA, 0xE2, 0x00, 0x77, 0x7C, 0xE8}};

    // Sets attributes of the node at `path`. Creates the node, and the nodes above it, if they do not exist. The call
    // is one change. The path must have at least two elements: a node without a parent is never reported.
    //
    // Returns E_INVALIDARG for an invalid path and for an attribute without a name; the tree is then unchanged. A write
    // that fails for another reason adds no node, but may have set attributes; it is not reported. It may be repeated.
    virtual Harbor::HRESULT WriteNode(std::u16string_view path, const std::vector<TextAttribute>& attributes) = 0;

    // Stores a copy of the whole tree. Its root has no name. The caller closes the handle.
    virtual Harbor::HRESULT CopyTree(AcnHandle* copy) = 0;

protected:
    ~IConfigTree() = default;
};

// Creates a service with an empty tree and starts its thread. Failures are thrown as Harbor::Failure or std::bad_alloc.
[[nodiscard]] Harbor::ComponentPtr<IConfigTree> CreateConfigServer();

}  // namespace ConfigServer
