#include "Common/Nodes/CNodeSerializer.h"

#include "Common/Base/HRes.h"
#include "Common/Failures/CodeOfCall.h"

namespace Harbor {

CNodeSerializer::CNodeSerializer(std::int32_t type, std::uint32_t flags, std::string& out)
    : sink_([&out](const void* data, std::uint32_t length) { out.append(static_cast<const char*>(data), length); }) {
    AcnContext context = nullptr;
    ThrowIfFailed(AcnStartSerialization(type, flags, &OnBlock, this, &context));
    context_.reset(context);
}

void CNodeSerializer::SerializeNodes(const AcnHandle* nodes, std::uint32_t count, std::uint32_t depth) {
    ThrowIfFailed(AcnSerializeNodes(context_.get(), nodes, count, depth));
}

void CNodeSerializer::Finalize() {
    ThrowIfFailed(AcnFinalizeSerialization(context_.get()));
}

HRESULT CNodeSerializer::OnBlock(const void* data, std::uint32_t length, void* user) {
    // The store is a C library: no exception may pass through it.
    return CodeOfCall([&] {
        static_cast<const CNodeSerializer*>(user)->sink_(data, length);
        return S_OK;
    });
}

std::string NodesToText(const AcnHandle* nodes, std::uint32_t count, std::uint32_t flags, std::uint32_t depth) {
    std::string text;
    CNodeSerializer serializer(NodeTextSerialization, flags, text);
    if (count != 0) serializer.SerializeNodes(nodes, count, depth);
    serializer.Finalize();
    if (text.ends_with('\0')) text.pop_back();
    return text;
}

}  // namespace Harbor
