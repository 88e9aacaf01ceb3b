// Serializes nodes as text with a serialization context of the store.
#pragma once

#include <functional>
#include <string>

#include "Common/Base/OwnedHandle.h"
#include "Common/Nodes/ACNode.h"

namespace Harbor {

inline constexpr std::int32_t NodeTextSerialization = 1;  // the only kind of the store that is used

// Used for one dump: call SerializeNodes at most once, then Finalize. Failures of the store are thrown as HRX.
class CNodeSerializer {
public:
    // Starts a dump. The text is appended to `out`, which must outlive this object. `type` is NodeTextSerialization.
    CNodeSerializer(std::int32_t type, std::uint32_t flags, std::string& out);
    CNodeSerializer(const CNodeSerializer&) = delete;
    CNodeSerializer& operator=(const CNodeSerializer&) = delete;

    void SerializeNodes(const AcnHandle* nodes, std::uint32_t count, std::uint32_t depth);
    void Finalize();

private:
    static HRESULT OnBlock(const void* data, std::uint32_t length, void* user);

    const std::function<void(const void* data, std::uint32_t length)> sink_;
    OwnedHandle<AcnContext, &AcnCloseSerializationContext> context_;
};

// Returns the store's text of nodes and of `depth` levels below them, in UTF-8. Failures are thrown as HRX.
[[nodiscard]] std::string NodesToText(const AcnHandle* nodes, std::uint32_t count, std::uint32_t flags,
                                      std::uint32_t depth);

}  // namespace Harbor
