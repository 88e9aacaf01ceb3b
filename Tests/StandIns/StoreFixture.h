// Handles for tests of the node store.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "Harbor/ResultCodes.h"
#include "NodeFabric/Authoring.h"

struct CloseNode {
    void operator()(AcnHandle node) const { EXPECT_EQ(AcnCloseNodeHandle(node), Harbor::S_OK); }
};
using NodePtr = std::unique_ptr<AcnNodeOpaque, CloseNode>;

// Runs a function that gives a handle in its last argument; null if it fails.
template <class... Parameters, class... Arguments>
NodePtr Open(Harbor::HRESULT (*function)(Parameters...), Arguments... arguments) {
    AcnHandle out = nullptr;
    return NodePtr(Harbor::Succeeded(function(arguments..., &out)) ? out : nullptr);
}

inline NodePtr NewNode(const char16_t* name, const char16_t* type = nullptr) {
    return Open(AcnCreateNode, name, type);
}

inline NodePtr AddChild(const NodePtr& parent, const char16_t* name, const char16_t* type = nullptr) {
    NodePtr child = NewNode(name, type);
    EXPECT_EQ(AcnAppendChild(parent.get(), child.get()), Harbor::S_OK);
    return child;
}

inline Harbor::HRESULT SetText(const NodePtr& node, const char16_t* name, const std::u16string& text) {
    const auto size = static_cast<std::uint32_t>((text.size() + 1) * sizeof(char16_t));
    return AcnSetAttribute(node.get(), name, AcnTypeWideText, text.c_str(), size);
}

// Reads a text in two calls: the size, then the text into exactly that room. A text that another thread has made longer
// in between is asked for again.
template <class Reader>
std::u16string ReadText(Reader read) {
    std::uint32_t size = 0;
    EXPECT_EQ(read(nullptr, &size), Harbor::BUFFER_TOO_SMALL);
    std::u16string text;
    Harbor::HRESULT code = Harbor::BUFFER_TOO_SMALL;
    while (code == Harbor::BUFFER_TOO_SMALL) {
        text.assign(size, u'?');
        code = read(text.data(), &size);
    }
    EXPECT_EQ(code, Harbor::S_OK);
    text.resize(size);
    EXPECT_EQ(text.back(), u'\0');
    text.pop_back();
    return text;
}

inline std::u16string FullPath(const NodePtr& node) {
    return ReadText([&](char16_t* buffer, std::uint32_t* size) { return AcnGetNodeName(node.get(), 2, buffer, size); });
}

using DumpSink = std::function<Harbor::HRESULT(std::string_view)>;

// Dumps a node, gives the code of the dump, and tries the calls that must no longer be possible after it.
inline Harbor::HRESULT DumpTo(DumpSink sink, AcnHandle node, std::uint32_t depth = AcnWholeTree) {
    const AcnSerializationCallback onBlock = [](const void* data, std::uint32_t length, void* user) {
        return (*static_cast<DumpSink*>(user))({static_cast<const char*>(data), length});
    };
    AcnContext context = nullptr;
    EXPECT_EQ(AcnStartSerialization(1, 257, onBlock, &sink, &context), Harbor::S_OK);
    const Harbor::HRESULT code = AcnSerializeNodes(context, &node, 1, depth);
    EXPECT_EQ(AcnSerializeNodes(context, &node, 1, depth), Harbor::E_UNEXPECTED);
    EXPECT_EQ(AcnFinalizeSerialization(context), Harbor::Succeeded(code) ? Harbor::S_OK : Harbor::E_UNEXPECTED);
    EXPECT_EQ(AcnFinalizeSerialization(context), Harbor::E_UNEXPECTED);
    EXPECT_EQ(AcnCloseSerializationContext(context), Harbor::S_OK);
    return code;
}

inline std::uint64_t OpenHandles() {
    std::uint64_t count = 0;
    EXPECT_EQ(AcnGetOpenHandleCount(&count), Harbor::S_OK);
    return count;
}

// Every test must leave as many handles open as it found.
class StoreTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(OpenHandles(), before_); }

private:
    const std::uint64_t before_ = OpenHandles();
};
