// One dump of nodes as text, by a serialization context of the store.
#pragma once

#include <functional>
#include <string>

#include "Common/Base/OwnedHandle.h"
#include "Common/Nodes/ACNode.h"

namespace Harbor {

inline constexpr std::int32_t NodeTextSerialization = 1;  // the one kind of _EnumACNSerializationType in use

// It lives for one dump: construct, SerializeNodes at most once, Finalize. Failures are thrown as HRX.
class CNodeSerializer {
public:
    // The text collects in `out`, which must outlive this.
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

// The store's text of nodes down to a depth, in UTF-8.
[[nodiscard]] std::string NodesToText(const AcnHandle* nodes, std::uint32_t count, std::uint32_t flags,
                                      std::uint32_t depth);

}  // namespace Harbor
