// An owning handle of a configuration node: the one place where the store's functions for reading and building nodes
// are called. Failures of the store are thrown as HRX with the store's code, unless an operation says otherwise.
//
// An ACNode has no lock: a thread uses its own. A raw handle at a component boundary is borrowed; make an ACNode of it.
#pragma once

#include <vector>

#include "Common/Nodes/TextRef.h"
#include "Harbor/ResultCodes.h"
#include "NodeFabric/NodeFabric.h"

namespace Harbor {

inline constexpr std::uint32_t MeasureText = 0xFFFFFFFF;

// Flags of FindByPath.
inline constexpr std::uint32_t NotAboveThisNode = 1;
inline constexpr std::uint32_t MustBeFound = 2;

class ACNode {
public:
    ACNode() noexcept = default;
    // A handle of its own to the node of a borrowed handle. A null handle gives an empty node.
    [[nodiscard]] static ACNode Borrow(AcnHandle handle);
    ACNode(const ACNode& other);
    ACNode(ACNode&& other) noexcept;
    ACNode& operator=(const ACNode& other);
    ACNode& operator=(ACNode&& other) noexcept;
    ~ACNode();

    void Close() noexcept;
    // Takes a handle of its own to that node. A failure leaves this as it was; the own handle again is no work.
    void Assign(AcnHandle handle);
    // Takes the other's handle and leaves it empty.
    void Take(ACNode& other) noexcept;
    // The place for a call to store a new handle in; what was held is closed first.
    AcnHandle* Receive() noexcept;
    AcnHandle Handle() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != nullptr; }

    // Building. Either text of Create may be null.
    void Create(const WideChar* first, const WideChar* second);
    [[nodiscard]] ACNode Clone(std::uint32_t depth, std::uint32_t flags) const;
    // `length` counts characters without the terminator; MeasureText means up to it.
    void SetText(const WideChar* name, const WideChar* text, std::uint32_t length);
    void SetInt32(const WideChar* name, std::int32_t value);
    void SetInt64(const WideChar* name, std::int64_t value);
    void SetBool(const WideChar* name, bool value);

    // Moving in the tree. A missing child is an empty node for the Find forms, and not found as HRX for the Get forms.
    [[nodiscard]] std::uint64_t GetChildCount() const;
    [[nodiscard]] ACNode FindChild(std::uint64_t index) const;
    [[nodiscard]] ACNode FindChild(const WideChar* name) const;
    [[nodiscard]] ACNode GetChild(std::uint64_t index) const;
    [[nodiscard]] ACNode GetChild(const WideChar* name) const;
    [[nodiscard]] ACNode GetParent() const;
    // The node at a path of elements separated by backslashes, from here or, if it begins with one, from the root.
    // An empty node if there is none, or not found as HRX with MustBeFound. A null text is E_POINTER.
    [[nodiscard]] ACNode FindByPath(const TextRef& path, std::uint32_t flags) const;

    // Texts about the node. A failure of the store gives an empty text.
    [[nodiscard]] WideString GetType() const;
    [[nodiscard]] WideString RequireType() const;  // throws the failure instead
    [[nodiscard]] WideString GetName(std::uint32_t kind) const;
    [[nodiscard]] WideString GetFullPath() const;
    [[nodiscard]] WideString GetAttributeNames() const;  // each ended by a 0 character

    // Attributes. The Try forms give false for a missing one, the Get forms throw not found.
    [[nodiscard]] bool HasAttribute(const WideChar* name) const;
    [[nodiscard]] bool TryGetAttribute(const WideChar* name, std::uint16_t type, void* buffer, std::uint32_t size,
                                       std::uint32_t* outSize, std::uint16_t* outType) const;
    [[nodiscard]] bool TryGetUInt32(const WideChar* name, std::uint32_t& out) const;
    [[nodiscard]] bool TryGetInt64(const WideChar* name, std::int64_t& out) const;
    [[nodiscard]] bool TryGetText(const WideChar* name, WideString& out) const;  // empties `out` where it gives false
    [[nodiscard]] std::uint32_t GetUInt32(const WideChar* name) const;
    [[nodiscard]] std::int64_t GetInt64(const WideChar* name) const;
    [[nodiscard]] WideString GetText(const WideChar* name) const;
    // The bytes as they are stored, and their type.
    [[nodiscard]] bool ReadRawAttribute(const TextRef& name, std::vector<std::uint8_t>& bytes,
                                        std::uint16_t& outType) const;

private:
    void SetAttribute(const WideChar* name, std::uint16_t type, const void* value, std::uint32_t size);

    AcnHandle handle_ = nullptr;
};

}  // namespace Harbor
