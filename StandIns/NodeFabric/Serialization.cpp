// Dumps: the contexts and the walk.
#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "Edge.h"
#include "Tree.h"
#include "XmlWriter.h"

using namespace Harbor;
using namespace NodeFabric;

namespace {

constexpr std::int32_t XmlKind = 1;
constexpr std::size_t BlockSize = std::size_t{16} * 1024;
constexpr std::string_view Opening = "<nr>\n";
constexpr std::string_view Ending{"</nr>\n\0", 7};

// Writes one tree piece by piece. Between two pieces the lock is released and the tree may change, so a handle to each
// node on the path to the present one is open. The path is a list, since a tree may be deeper than any call stack.
class TreeDump {
public:
    TreeDump(std::string& text, std::uint32_t depth) : text_(text), writer_(text), depth_(depth) {}

    void Begin(Node& root) {
        const auto lock = LockStructure();
        BeginNode(root);
    }

    // Writes until the text has the size of a block. Returns false at the end of the tree.
    bool Continue() {
        written_.clear();
        const auto lock = LockStructure();
        while (!way_.empty() && text_.size() < BlockSize) {
            Level& level = way_.back();
            if (level.nextChild < level.node->children.Size()) {
                BeginNode(*level.node->children[level.nextChild++]);
            } else {
                EndNode(level);
            }
        }
        return !way_.empty();
    }

private:
    struct Level {
        OpenNode node;
        std::size_t nextChild = 0;
    };

    // Both are called with the lock held.
    void BeginNode(Node& node) {
        const bool withChildren = way_.size() < depth_ && !node.children.Empty();
        if (!writer_.BeginNode(node, way_.size() + 1, withChildren)) return;
        way_.emplace_back().node.reset(OpenLocked(node));
    }
    void EndNode(Level& level) {
        writer_.EndNode(way_.size());
        written_.push_back(std::move(level.node));
        way_.pop_back();
    }

    std::string& text_;
    XmlWriter writer_;
    const std::size_t depth_;
    std::vector<Level> way_;
    std::vector<OpenNode> written_;  // closed when the lock is released
};

}  // namespace

struct AcnContextOpaque {
    AcnContextOpaque(AcnSerializationCallback callback, void* user) : callback_(callback), user_(user) {}

    HRESULT Serialize(const AcnHandle* nodes, std::uint32_t count, std::uint32_t depth) {
        if (!Advance(Phase::Started, Phase::Ended)) return E_UNEXPECTED;
        for (std::uint32_t index = 0; index < count; ++index) {
            if (const HRESULT code = Dump(*nodes[index], depth); Failed(code)) return code;
        }
        phase_ = Phase::Serialized;
        return S_OK;
    }

    HRESULT Finalize() {
        if (!Advance(Phase::Started, Phase::Ended) && !Advance(Phase::Serialized, Phase::Ended)) return E_UNEXPECTED;
        text_ += Ending;
        return Deliver(1);
    }

private:
    // A context is in its last phase while it works: after a failure it stays there, and a second caller is refused.
    enum class Phase { Started, Serialized, Ended };

    bool Advance(Phase from, Phase to) noexcept { return phase_.compare_exchange_strong(from, to); }

    // Delivers without the lock: the receiver may call the store.
    HRESULT Dump(Node& root, std::uint32_t depth) {
        TreeDump dump(text_, depth);
        dump.Begin(root);
        for (bool more = true; more;) {
            more = dump.Continue();
            if (const HRESULT code = Deliver(BlockSize); Failed(code)) return code;
        }
        return S_OK;
    }

    // Keeps a rest that is shorter than `least`.
    HRESULT Deliver(std::size_t least) {
        std::string_view left = text_;
        while (left.size() >= least) {
            const std::string_view block = left.substr(0, BlockSize);
            const HRESULT code = callback_(block.data(), static_cast<std::uint32_t>(block.size()), user_);
            if (Failed(code)) return code;
            left.remove_prefix(block.size());
        }
        text_.erase(0, text_.size() - left.size());
        return S_OK;
    }

    const AcnSerializationCallback callback_;
    void* const user_;
    std::atomic<Phase> phase_{Phase::Started};
    std::string text_{Opening};  // not delivered yet; owned by the caller that advanced the phase
};

extern "C" {

HRESULT AcnStartSerialization(std::int32_t kind, std::uint32_t, AcnSerializationCallback callback, void* user,
                              AcnContext* out) {
    return AtEdge([&] {
        if (callback == nullptr || out == nullptr) return E_POINTER;
        if (kind != XmlKind) return E_INVALIDARG;
        *out = std::make_unique<AcnContextOpaque>(callback, user).release();
        return S_OK;
    });
}

HRESULT AcnSerializeNodes(AcnContext context, const AcnHandle* nodes, std::uint32_t count, std::uint32_t depth) {
    return AtEdge([&] {
        if (context == nullptr) return E_INVALIDARG;
        if (nodes == nullptr && count != 0) return E_POINTER;
        if (std::find(nodes, nodes + count, nullptr) != nodes + count) return E_INVALIDARG;
        return context->Serialize(nodes, count, depth);
    });
}

HRESULT AcnFinalizeSerialization(AcnContext context) {
    return AtEdge([&] {
        if (context == nullptr) return E_INVALIDARG;
        return context->Finalize();
    });
}

HRESULT AcnCloseSerializationContext(AcnContext context) {
    if (context == nullptr) return E_INVALIDARG;
    const std::unique_ptr<AcnContextOpaque> closed(context);
    return S_OK;
}
}
