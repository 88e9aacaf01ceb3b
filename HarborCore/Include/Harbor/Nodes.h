// Owning handles of nodes, and their attributes as values. Failures of the node store are thrown as Failure.
#pragma once

#include <string_view>

#include "Harbor/Failure.h"
#include "Harbor/OwnedHandle.h"
#include "NodeFabric/NodeFabric.h"

namespace Harbor {

// Closes the handle at the end of its scope.
using NodeHandle = OwnedHandle<AcnHandle, &AcnCloseNodeHandle>;

// Creates a node that has no parent. A null type means an empty one.
[[nodiscard]] inline NodeHandle NewNode(const WideChar* name, const WideChar* type = nullptr) {
    AcnHandle node = nullptr;
    ThrowIfFailed(AcnCreateNode(name, type, &node), "AcnCreateNode");
    return NodeHandle(node);
}

// Throws a Failure that names the call and the attribute if `code` is a failure.
inline void ThrowIfAttributeFailed(HRESULT code, const std::string& call, std::u16string_view name) {
    if (Failed(code)) ThrowIfFailed(code, (call + " '" + ToUtf8(name) + '\'').c_str());
}

// Set an attribute, in the type that the name of the function says.
inline void SetText(AcnHandle node, const WideChar* name, std::u16string_view text) {
    const WideString terminated(text);
    const auto size = static_cast<std::uint32_t>((terminated.size() + 1) * sizeof(WideChar));
    ThrowIfAttributeFailed(AcnSetAttribute(node, name, AcnTypeWideText, terminated.c_str(), size), "AcnSetAttribute",
                           name);
}
inline void SetUInt32(AcnHandle node, const WideChar* name, std::uint32_t value) {
    ThrowIfAttributeFailed(AcnSetAttribute(node, name, AcnTypeUInt32, &value, sizeof(value)), "AcnSetAttribute", name);
}
inline void SetInt64(AcnHandle node, const WideChar* name, std::int64_t value) {
    ThrowIfAttributeFailed(AcnSetAttribute(node, name, AcnTypeInt64, &value, sizeof(value)), "AcnSetAttribute", name);
}

// Return an attribute. GetInt64 also reads the other numeric types and booleans. The code of the Failure is NOT_FOUND
// if the attribute is missing, and DATATYPE_MISMATCH if it has another type.
[[nodiscard]] inline WideString GetText(AcnHandle node, const WideChar* name) {
    const std::uint16_t type = AcnTypeWideText;
    WideString text;
    HRESULT code = S_OK;
    do {  // another thread may lengthen the text between the two calls
        std::uint32_t size = 0;
        code = AcnGetAttribute(node, name, &type, nullptr, &size, nullptr);
        if (Failed(code) && code != BUFFER_TOO_SMALL) break;
        text.resize(size / sizeof(WideChar));
        code = AcnGetAttribute(node, name, &type, text.data(), &size, nullptr);
        if (Succeeded(code)) text.resize(size / sizeof(WideChar) - 1);
    } while (code == BUFFER_TOO_SMALL);
    ThrowIfAttributeFailed(code, "AcnGetAttribute", name);
    return text;
}
[[nodiscard]] inline std::int64_t GetInt64(AcnHandle node, const WideChar* name) {
    const std::uint16_t type = AcnTypeInt64;
    std::int64_t value = 0;
    std::uint32_t size = sizeof(value);
    ThrowIfAttributeFailed(AcnGetAttribute(node, name, &type, &value, &size, nullptr), "AcnGetAttribute", name);
    return value;
}

}  // namespace Harbor
