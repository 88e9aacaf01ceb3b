// Node handles for tests, closed at the end of their scope.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Harbor/ResultCodes.h"
#include "NodeFabric/Authoring.h"
#include "Support/NodeLedger.h"

struct CloseNode {
    void operator()(AcnHandle node) const { EXPECT_EQ(AcnCloseNodeHandle(node), Harbor::S_OK); }
};
using NodePtr = std::unique_ptr<AcnNodeOpaque, CloseNode>;

// Calls a function that returns a handle in its last argument. Returns null if it fails.
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

// Every test must leave the same handles open that it found.
class StoreTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(OpenHandles(), before_); }

private:
    const std::pair<std::uint64_t, std::uint64_t> before_ = OpenHandles();
};
