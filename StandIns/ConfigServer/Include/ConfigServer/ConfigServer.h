// A configuration service: a tree of nodes that its host writes and whose changes it reports to those who watch them.
//
//     const auto tree = ConfigServer::CreateConfigServer();
//     ThrowIfFailed(MBSetNamedInstance(ConfigServiceInstanceName, tree.Get()));
//     hres = tree->WriteNode(u"\\Commands\\Parent\\Leaf\\Command1", {{u"Command", u"Start"}});
//
// The object's other interface is IACConfigService. Any thread may call any operation at any time, a callback among
// them.
//
// Watches. The filter's NodePath names the watched node, with a backslash before each element; elements are compared
// exactly. A watch covers that node and what stands at most MaxDepth levels below it. With IsParent the path names the
// parent of what is watched: the node itself isn't covered, what stands below it is. The parameters' ChangesMask picks
// kinds of change by the bits below; SubscribeOptions must be there, but no option is known here. AddSubscription gives
// 0x80070490 for a missing attribute, 0x8007065D for one of the wrong type, E_INVALIDARG for a path that is none or
// for a negative depth, E_POINTER for a null callback or result. It reads the nodes and keeps neither.
//
// Reports. Each write is reported once, in the order of the writes, to each subscription that was started before and
// covers the path, on the service's one thread. A callback gets one notification node at a time, which is its own: with
// a snapshot of the written node and all that stood below it as its one child. The snapshot reports the full path of
// the original. Next gives S_FALSE at the end. An enumerator serves one thread at a time, but for as long as it is
// held. A callback that fails or throws is logged, and nobody else notices.
//
// The end of a watch. A subscription ends with RemoveSubscription, with the last Release of it, or with the service.
// After the first two have returned no callback runs or comes for it on any thread: they wait for one that is running,
// so the caller may hold a lock only if its callback never takes it. On the service's own thread they don't wait; a
// callback that ends its own subscription is the last one. RemoveSubscription gives 0x80070490 for a subscription that
// is unknown or has ended already, E_POINTER for null; Start on an ended one gives WatchEnded. The pointer that a
// callback gets is valid during the call and counts no reference: it may be kept only by who has a reference already.
//
// The end of the service, with its last Release: what is not yet reported is dropped, a running callback is waited for,
// as above. From within a callback nothing is waited for, and the thread ends when that callback has returned.
#pragma once

#include <string_view>
#include <vector>

#include "Harbor/ComponentPtr.h"
#include "Harbor/ConfigService.h"

namespace ConfigServer {

// The service's own code, in the range of codes that interfaces define for themselves; its text stands in
// SharedFaultTexts.dll.
inline constexpr Harbor::HRESULT WatchEnded = Harbor::MakeHResult(0x80040201);

// The bits of ChangesMask in a report and in the parameters of a watch.
inline constexpr std::int64_t AttributesWritten = 1;
inline constexpr std::int64_t NodeAdded = 2;  // the written node wasn't there before

// What OnTriggered gets as its number: nodes were modified, the one kind of report there is.
inline constexpr int NodesModified = 1;

struct TextAttribute {
    Harbor::WideString name;
    Harbor::WideString value;
};

struct IConfigTree : Harbor::IComponentUnknown {
    static constexpr Harbor::GUID Id{0x672C6ABF, 0x7FEE, 0x448B, {0x8E, 0x2A, 0xDA, 0xE2, 0x00, 0x77, 0x7C, 0xE8}};

    // Sets the attributes of the node at `path`, which is made if it is missing, as are the nodes above it. The whole
    // call is one change. The path needs two elements at least: a node without a parent is never reported.
    // E_INVALIDARG for another path and for an attribute without a name; the tree is then as it was.
    virtual Harbor::HRESULT WriteNode(std::u16string_view path, const std::vector<TextAttribute>& attributes) = 0;
};

// A service with an empty tree and its running thread. Failures are thrown as HRX.
[[nodiscard]] Harbor::ComponentPtr<IConfigTree> CreateConfigServer();

}  // namespace ConfigServer
