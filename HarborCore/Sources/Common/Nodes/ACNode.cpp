#include "Common/Nodes/ACNode.h"

#include <algorithm>

#include "Common/Base/HRes.h"
#include "Common/Nodes/NodePath.h"

namespace Harbor {
namespace {

constexpr std::uint32_t FirstBufferSize = 128;

struct TextRead {
    HRESULT status = S_OK;
    WideString text;
};

// The loop of all text readers. `reader(buffer, &size)` calls the store; its size counts characters, the terminator
// included. A failed status is returned, not thrown.
template <class Reader>
TextRead ReadText(Reader reader) {
    WideChar local[FirstBufferSize];
    std::uint32_t size = FirstBufferSize;
    std::uint32_t limit = FirstBufferSize;
    TextRead result;
    result.status = reader(local, &size);
    if (Succeeded(result.status)) {
        if (size > 0) result.text.assign(local, size - 1);
        return result;
    }
    while (result.status == BUFFER_TOO_SMALL && size > limit) {
        result.text.resize(size - 1);
        limit = size;
        result.status = reader(result.text.empty() ? nullptr : result.text.data(), &size);
    }
    result.text.resize(Succeeded(result.status) && size > 0 ? size - 1 : 0);
    return result;
}

TextRead ReadType(AcnHandle node) {
    return ReadText([node](WideChar* buffer, std::uint32_t* size) { return AcnGetNodeType(node, buffer, size); });
}

void ThrowIfMissing(bool found) {
    if (!found) ThrowError(NOT_FOUND);
}

void ThrowUnlessNotFound(HRESULT code) {
    if (code != NOT_FOUND) ThrowIfFailed(code);
}

}  // namespace

ACNode ACNode::Borrow(AcnHandle handle) {
    ACNode node;
    node.Assign(handle);
    return node;
}

ACNode::ACNode(const ACNode& other) {
    Assign(other.handle_);
}

ACNode::ACNode(ACNode&& other) noexcept {
    Take(other);
}

ACNode& ACNode::operator=(const ACNode& other) {
    Assign(other.handle_);
    return *this;
}

ACNode& ACNode::operator=(ACNode&& other) noexcept {
    Take(other);
    return *this;
}

ACNode::~ACNode() {
    Close();
}

void ACNode::Close() noexcept {
    if (handle_ != nullptr) AcnCloseNodeHandle(std::exchange(handle_, nullptr));
}

void ACNode::Assign(AcnHandle handle) {
    if (handle == handle_) return;
    AcnHandle duplicate = nullptr;
    if (handle != nullptr) ThrowIfFailed(AcnDuplicateNodeHandle(handle, &duplicate));
    Close();
    handle_ = duplicate;
}

void ACNode::Take(ACNode& other) noexcept {
    if (handle_ == other.handle_) return;
    Close();
    handle_ = std::exchange(other.handle_, nullptr);
}

AcnHandle* ACNode::Receive() noexcept {
    Close();
    return &handle_;
}

void ACNode::Create(const WideChar* name, const WideChar* type) {
    ThrowIfFailed(AcnCreateNode(name, type, Receive()));
}

ACNode ACNode::Clone(std::uint32_t depth, std::uint32_t flags) const {
    ACNode clone;
    ThrowIfFailed(AcnCloneNode(handle_, depth, flags, clone.Receive()));
    return clone;
}

void ACNode::SetAttribute(const WideChar* name, std::uint16_t type, const void* value, std::uint32_t size) {
    ThrowIfFailed(AcnSetAttribute(handle_, name, type, value, size));
}

void ACNode::SetText(const WideChar* name, const WideChar* text, std::uint32_t length) {
    if (length == MeasureText) length = static_cast<std::uint32_t>(std::u16string_view(text).size());
    SetAttribute(name, AcnTypeWideText, text, (length + 1) * static_cast<std::uint32_t>(sizeof(WideChar)));
}

void ACNode::SetInt32(const WideChar* name, std::int32_t value) {
    SetAttribute(name, AcnTypeInt32, &value, sizeof(value));
}

void ACNode::SetInt64(const WideChar* name, std::int64_t value) {
    SetAttribute(name, AcnTypeInt64, &value, sizeof(value));
}

void ACNode::SetBool(const WideChar* name, bool value) {
    const std::uint8_t byte = value ? 1 : 0;
    SetAttribute(name, AcnTypeBool, &byte, sizeof(byte));
}

std::uint64_t ACNode::GetChildCount() const {
    std::uint64_t count = 0;
    ThrowIfFailed(AcnGetChildCount(handle_, &count));
    return count;
}

ACNode ACNode::FindChild(std::uint64_t index) const {
    ACNode child;
    ThrowUnlessNotFound(AcnGetChildByIndex(handle_, index, child.Receive()));
    return child;
}

ACNode ACNode::FindChild(const WideChar* name) const {
    ACNode child;
    ThrowUnlessNotFound(AcnGetChildByName(handle_, name, child.Receive()));
    return child;
}

ACNode ACNode::GetChild(std::uint64_t index) const {
    ACNode child;
    ThrowIfFailed(AcnGetChildByIndex(handle_, index, child.Receive()));
    return child;
}

ACNode ACNode::GetChild(const WideChar* name) const {
    ACNode child;
    ThrowIfFailed(AcnGetChildByName(handle_, name, child.Receive()));
    return child;
}

ACNode ACNode::GetParent() const {
    ACNode parent;
    ThrowIfFailed(AcnGetParent(handle_, parent.Receive()));
    return parent;
}

ACNode ACNode::FindByPath(const TextRef& path, std::uint32_t flags) const {
    if (path.Data() == nullptr) ThrowError(E_POINTER);
    const NodePathWalk walk = WalkTo(path.View(), [this] { return GetFullPath(); });
    ACNode current;
    if (walk.exists && (walk.levelsUp == 0 || (flags & NotAboveThisNode) == 0)) {
        current = *this;
        for (std::size_t level = 0; level < walk.levelsUp && current; ++level) current = current.GetParent();
        std::u16string_view rest = walk.down;
        while (current && !rest.empty()) {
            if (rest.front() == u'\\') rest.remove_prefix(1);
            const WideString element(rest.substr(0, rest.find(u'\\')));
            rest.remove_prefix(element.size());
            current = current.FindChild(element.c_str());
        }
    }
    if (!current && (flags & MustBeFound) != 0) ThrowError(NOT_FOUND);
    return current;
}

WideString ACNode::GetType() const {
    return ReadType(handle_).text;
}

WideString ACNode::GetTypeOrThrow() const {
    TextRead read = ReadType(handle_);
    ThrowIfFailed(read.status);
    return std::move(read.text);
}

WideString ACNode::GetName(std::uint32_t kind) const {
    return ReadText([this, kind](WideChar* buffer, std::uint32_t* size) {
               return AcnGetNodeName(handle_, kind, buffer, size);
           })
        .text;
}

WideString ACNode::GetFullPath() const {
    return GetName(AcnFullPath);
}

WideString ACNode::GetAttributeNames() const {
    return ReadText(
               [this](WideChar* buffer, std::uint32_t* size) { return AcnGetAttributeNames(handle_, buffer, size); })
        .text;
}

bool ACNode::HasAttribute(const WideChar* name) const {
    const HRESULT code = AcnGetAttribute(handle_, name, nullptr, nullptr, nullptr, nullptr);
    if (code == NOT_FOUND) return false;
    ThrowIfFailed(code);
    return true;
}

bool ACNode::TryGetAttribute(const WideChar* name, std::uint16_t type, void* buffer, std::uint32_t size,
                             std::uint32_t* outSize, std::uint16_t* outType) const {
    const HRESULT code = AcnGetAttribute(handle_, name, &type, buffer, &size, outType);
    if (outSize != nullptr) *outSize = size;
    if (code == NOT_FOUND) return false;
    ThrowIfFailed(code);
    return true;
}

bool ACNode::TryGetUInt32(const WideChar* name, std::uint32_t& out) const {
    return TryGetAttribute(name, AcnTypeUInt32, &out, sizeof(out), nullptr, nullptr);
}

bool ACNode::TryGetInt64(const WideChar* name, std::int64_t& out) const {
    return TryGetAttribute(name, AcnTypeInt64, &out, sizeof(out), nullptr, nullptr);
}

bool ACNode::TryGetText(const WideChar* name, WideString& out) const {
    TextRead read = ReadText([this, name](WideChar* buffer, std::uint32_t* size) {
        constexpr std::uint32_t characterSize = sizeof(WideChar);
        std::uint32_t bytes = *size * characterSize;
        const HRESULT code = AcnGetAttribute(handle_, name, &AcnTypeWideText, buffer, &bytes, nullptr);
        *size = bytes / characterSize;
        return code;
    });
    out.clear();
    if (read.status == NOT_FOUND) return false;
    ThrowIfFailed(read.status);
    out = std::move(read.text);
    return true;
}

std::uint32_t ACNode::GetUInt32(const WideChar* name) const {
    std::uint32_t value = 0;
    ThrowIfMissing(TryGetUInt32(name, value));
    return value;
}

std::int64_t ACNode::GetInt64(const WideChar* name) const {
    std::int64_t value = 0;
    ThrowIfMissing(TryGetInt64(name, value));
    return value;
}

WideString ACNode::GetText(const WideChar* name) const {
    WideString value;
    ThrowIfMissing(TryGetText(name, value));
    return value;
}

bool ACNode::ReadRawAttribute(const TextRef& name, std::vector<std::uint8_t>& bytes, std::uint16_t& outType) const {
    bytes.resize(std::max<std::size_t>(bytes.size(), FirstBufferSize));
    HRESULT code = BUFFER_TOO_SMALL;
    while (code == BUFFER_TOO_SMALL) {
        auto size = static_cast<std::uint32_t>(bytes.size());
        code = AcnGetAttribute(handle_, name.Data(), nullptr, bytes.data(), &size, &outType);
        bytes.resize(size);
    }
    ThrowUnlessNotFound(code);
    return Succeeded(code);
}

}  // namespace Harbor
