// The trees that the node benchmarks work on.
#pragma once

#include <string>

#include "Common/Base/HRes.h"
#include "Common/Nodes/ACNode.h"
#include "NodeFabric/Authoring.h"

namespace Benchmarks {

inline Harbor::WideString ItemName(std::size_t index) {
    const std::string digits = std::to_string(index);
    return u"Item" + Harbor::WideString(digits.begin(), digits.end());
}

// A node with that many children of four attributes each.
inline Harbor::ACNode MakeItemTree(const Harbor::WideChar* name, std::size_t count) {
    Harbor::ACNode root;
    root.Create(name, u"Items");
    for (std::size_t i = 0; i < count; ++i) {
        const Harbor::WideString itemName = ItemName(i);
        Harbor::ACNode item;
        item.Create(itemName.c_str(), u"ScopeItem");
        item.SetText(u"DisplayName", itemName.c_str(), Harbor::MeasureText);
        item.SetInt32(u"Priority", static_cast<std::int32_t>(i % 10));
        item.SetInt64(u"LastChange", 133'000'000'000'000'000 + static_cast<std::int64_t>(i));
        item.SetBool(u"IsEnabled", i % 2 == 0);
        Harbor::ThrowIfFailed(AcnAppendChild(root.Handle(), item.Handle()));
    }
    return root;
}

}  // namespace Benchmarks
