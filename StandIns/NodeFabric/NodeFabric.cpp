// The C functions on nodes. Each checks its arguments and calls the functions of the tree, the attributes or the
// buffers.
#include "NodeFabric/NodeFabric.h"

#include "Buffers.h"
#include "Edge.h"
#include "Node.h"
#include "NodeFabric/Authoring.h"
#include "Tree.h"

using namespace Harbor;
using namespace NodeFabric;

namespace {

std::u16string_view ViewOrEmpty(const WideChar* text) {
    return text != nullptr ? std::u16string_view(text) : std::u16string_view();
}

HRESULT StoreIfFound(AcnHandle found, AcnHandle* out) noexcept {
    if (found == nullptr) return NOT_FOUND;
    *out = found;
    return S_OK;
}

HRESULT ReadAttribute(const Node& node, std::u16string_view name, const std::uint16_t* type, void* buffer,
                      std::uint32_t* size, std::uint16_t* outType) {
    const std::lock_guard lock(node.attributesLock);
    const AttributeValue* value = node.attributes.Find(name);
    if (value == nullptr) return NOT_FOUND;
    const std::uint16_t delivered = type != nullptr ? *type : value->type;
    const HRESULT code = ReadValue(*value, delivered, buffer, size);
    if (outType != nullptr && Succeeded(code)) *outType = delivered;
    return code;
}

HRESULT StoreAttribute(Node& node, std::u16string_view name, std::uint16_t type, const void* bytes,
                       std::uint32_t size) {
    auto value = ParseValue(type, bytes, size);
    if (name.empty() || !value) return E_INVALIDARG;
    const std::lock_guard lock(node.attributesLock);
    node.attributes.Set(name, std::move(*value));
    return S_OK;
}

WideString AttributeNames(const Node& node) {
    const std::lock_guard lock(node.attributesLock);
    return node.attributes.Names();
}

}  // namespace

extern "C" {

HRESULT AcnCreateNode(const WideChar* name, const WideChar* type, AcnHandle* out) {
    return AtEdge([&] {
        if (out == nullptr) return E_POINTER;
        *out = CreateRoot(ViewOrEmpty(name), ViewOrEmpty(type));
        return S_OK;
    });
}

HRESULT AcnDuplicateNodeHandle(AcnHandle node, AcnHandle* out) {
    if (out == nullptr) return E_POINTER;
    if (node == nullptr) return E_INVALIDARG;
    *out = Duplicate(*node);
    return S_OK;
}

HRESULT AcnCloseNodeHandle(AcnHandle node) {
    if (node == nullptr) return E_INVALIDARG;
    Close(*node);
    return S_OK;
}

HRESULT AcnCloneNode(AcnHandle node, std::uint32_t depth, std::uint32_t flags, AcnHandle* out) {
    return AtEdge([&] {
        if (out == nullptr) return E_POINTER;
        if (node == nullptr || flags != 0) return E_INVALIDARG;
        *out = CloneTree(*node, depth);
        return S_OK;
    });
}

HRESULT AcnGetParent(AcnHandle node, AcnHandle* out) {
    return AtEdge([&] {
        if (out == nullptr) return E_POINTER;
        if (node == nullptr) return E_INVALIDARG;
        return StoreIfFound(OpenParent(*node), out);
    });
}

HRESULT AcnGetChildCount(AcnHandle node, std::uint64_t* out) {
    return AtEdge([&] {
        if (out == nullptr) return E_POINTER;
        if (node == nullptr) return E_INVALIDARG;
        *out = ChildCount(*node);
        return S_OK;
    });
}

HRESULT AcnGetChildByIndex(AcnHandle node, std::uint64_t index, AcnHandle* out) {
    return AtEdge([&] {
        if (out == nullptr) return E_POINTER;
        if (node == nullptr) return NOT_FOUND;
        return StoreIfFound(OpenChild(*node, index), out);
    });
}

HRESULT AcnGetChildByName(AcnHandle node, const WideChar* name, AcnHandle* out) {
    return AtEdge([&] {
        if (name == nullptr || out == nullptr) return E_POINTER;
        if (node == nullptr) return NOT_FOUND;
        return StoreIfFound(OpenChild(*node, std::u16string_view(name)), out);
    });
}

HRESULT AcnGetNodeName(AcnHandle node, std::uint32_t kind, WideChar* buffer, std::uint32_t* size) {
    return AtEdge([&] {
        if (size == nullptr) return E_POINTER;
        if (node == nullptr) return E_INVALIDARG;
        if (kind == AcnOwnName) return CopyText(node->name, buffer, *size);
        if (kind == AcnFullPath) return CopyText(FullPath(*node), buffer, *size);
        return E_INVALIDARG;
    });
}

HRESULT AcnGetNodeType(AcnHandle node, WideChar* buffer, std::uint32_t* size) {
    return AtEdge([&] {
        if (size == nullptr) return E_POINTER;
        if (node == nullptr) return E_INVALIDARG;
        return CopyText(node->type, buffer, *size);
    });
}

HRESULT AcnGetAttributeNames(AcnHandle node, WideChar* buffer, std::uint32_t* size) {
    return AtEdge([&] {
        if (size == nullptr) return E_POINTER;
        if (node == nullptr) return E_INVALIDARG;
        return CopyText(AttributeNames(*node), buffer, *size);
    });
}

HRESULT AcnGetAttribute(AcnHandle node, const WideChar* name, const std::uint16_t* type, void* buffer,
                        std::uint32_t* size, std::uint16_t* outType) {
    return AtEdge([&] {
        if (name == nullptr || (buffer != nullptr && size == nullptr)) return E_POINTER;
        if (node == nullptr) return NOT_FOUND;
        return ReadAttribute(*node, name, type, buffer, size, outType);
    });
}

HRESULT AcnSetAttribute(AcnHandle node, const WideChar* name, std::uint16_t type, const void* value,
                        std::uint32_t size) {
    return AtEdge([&] {
        if (name == nullptr || value == nullptr) return E_POINTER;
        if (node == nullptr) return E_INVALIDARG;
        return StoreAttribute(*node, name, type, value, size);
    });
}

HRESULT AcnAppendChild(AcnHandle parent, AcnHandle child) {
    return AtEdge([&] {
        if (parent == nullptr || child == nullptr) return E_INVALIDARG;
        return AppendChild(*parent, *child);
    });
}

HRESULT AcnRemoveChild(AcnHandle parent, AcnHandle child) {
    return AtEdge([&] {
        if (parent == nullptr || child == nullptr) return E_INVALIDARG;
        return RemoveChild(*parent, *child);
    });
}

HRESULT AcnGetOpenHandleCount(std::uint64_t* out) {
    if (out == nullptr) return E_POINTER;
    *out = OpenHandleCount();
    return S_OK;
}
}
