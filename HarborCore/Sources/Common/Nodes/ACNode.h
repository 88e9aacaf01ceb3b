// An owning handle of a configuration node. All calls of the store that read or build nodes are made here. A failure of
// the store is thrown as HRX with the store's code, unless an operation says otherwise.
//
// An ACNode has no lock: each thread uses its own. A raw handle that crosses a component boundary is borrowed; the
// receiver makes its own ACNode from it with Borrow.
#pragma once

#include <vector>

#include "Common/Nodes/TextRef.h"
#include "Harbor/ResultCodes.h"
#include "NodeFabric/NodeFabric.h"

namespace Harbor {

inline constexpr std::uint32_t MeasureText = 0xFFFFFFFF;  // a length: up to the terminator

// Flags of FindByPath.
inline constexpr std::uint32_t NotAboveThisNode = 1;  // find only this node and the nodes below it
inline constexpr std::uint32_t MustBeFound = 2;       // throw NOT_FOUND instead of returning an empty ACNode

class ACNode {
public:
    ACNode() noexcept = default;
    // Returns a new handle to the node of a borrowed handle. Returns an empty ACNode for a null handle.
    [[nodiscard]] static ACNode Borrow(AcnHandle handle);
    ACNode(const ACNode& other);
    ACNode(ACNode&& other) noexcept;
    ACNode& operator=(const ACNode& other);
    ACNode& operator=(ACNode&& other) noexcept;
    ~ACNode();

    void Close() noexcept;
    // Replaces the handle by a new one to the node of a borrowed handle. Assigning its own handle does nothing. A
    // failure leaves this unchanged.
    void Assign(AcnHandle handle);
    // Moves the other's handle here. Does nothing if both hold the same handle value.
    void Take(ACNode& other) noexcept;
    // Closes the handle and returns the address at which a call may store a new one.
    AcnHandle* Receive() noexcept;
    AcnHandle Handle() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != nullptr; }

    // Building. Create replaces this by a new node; either text may be null.
    void Create(const WideChar* name, const WideChar* type);
    [[nodiscard]] ACNode Clone(std::uint32_t depth, std::uint32_t flags) const;
    // `length` counts characters without the terminator, or is MeasureText.
    void SetText(const WideChar* name, const WideChar* text, std::uint32_t length);
    void SetInt32(const WideChar* name, std::int32_t value);
    void SetInt64(const WideChar* name, std::int64_t value);
    void SetBool(const WideChar* name, bool value);

    // Moving in the tree. For a missing child the Find forms return an empty ACNode, and the Get forms throw NOT_FOUND.
    [[nodiscard]] std::uint64_t GetChildCount() const;
    [[nodiscard]] ACNode FindChild(std::uint64_t index) const;
    [[nodiscard]] ACNode FindChild(const WideChar* name) const;
    [[nodiscard]] ACNode GetChild(std::uint64_t index) const;
    [[nodiscard]] ACNode GetChild(const WideChar* name) const;
    [[nodiscard]] ACNode GetParent() const;
    // Returns the node at a path. Backslashes separate the elements. A path that begins with one starts at the root,
    // any other at this node. If there is no such node, returns an empty ACNode, or throws NOT_FOUND with MustBeFound.
    // Throws E_POINTER for a null text. Nothing in this module calls it yet.
    [[nodiscard]] ACNode FindByPath(const TextRef& path, std::uint32_t flags) const;

    // Texts about the node. A failure of the store returns an empty text, except from GetTypeOrThrow.
    [[nodiscard]] WideString GetType() const;
    [[nodiscard]] WideString GetTypeOrThrow() const;
    [[nodiscard]] WideString GetName(std::uint32_t kind) const;
    [[nodiscard]] WideString GetFullPath() const;
    [[nodiscard]] WideString GetAttributeNames() const;  // a 0 character ends each name

    // Attributes. If the attribute is missing, the Has and Try forms return false, and the Get forms throw NOT_FOUND.
    [[nodiscard]] bool HasAttribute(const WideChar* name) const;
    [[nodiscard]] bool TryGetAttribute(const WideChar* name, std::uint16_t type, void* buffer, std::uint32_t size,
                                       std::uint32_t* outSize, std::uint16_t* outType) const;
    [[nodiscard]] bool TryGetUInt32(const WideChar* name, std::uint32_t& out) const;
    [[nodiscard]] bool TryGetInt64(const WideChar* name, std::int64_t& out) const;
    [[nodiscard]] bool TryGetText(const WideChar* name, WideString& out) const;  // false empties `out`
    [[nodiscard]] std::uint32_t GetUInt32(const WideChar* name) const;
    [[nodiscard]] std::int64_t GetInt64(const WideChar* name) const;
    [[nodiscard]] WideString GetText(const WideChar* name) const;
    // Stores the bytes in the form in which the store holds them, and their type. Returns false if the attribute is
    // missing.
    [[nodiscard]] bool ReadRawAttribute(const TextRef& name, std::vector<std::uint8_t>& bytes,
                                        std::uint16_t& outType) const;

private:
    void SetAttribute(const WideChar* name, std::uint16_t type, const void* value, std::uint32_t size);

    AcnHandle handle_ = nullptr;
};

}  // namespace Harbor
