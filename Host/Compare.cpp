#include "Host/Compare.h"

#include <iostream>
#include <nlohmann/json.hpp>

#include "Common/Text.h"
#include "DataCollection/TriggerStrategy.h"
#include "Host/Failure.h"
#include "Host/LoadedModule.h"
#include "Host/NodeFile.h"
#include "Subsystems/ActionManager/NodeComparison.h"

namespace Host {

using namespace DataCollection;
using namespace Harbor;

namespace {

struct Reason {
    bool trigger;
    std::string text;
};

constexpr std::uint32_t OwnName = 0;

// Nothing: the item is no reason to trigger.
std::optional<std::string> ItemReason(const ACNode& oldItems, const ACNode& item) {
    const WideString name = item.GetName(OwnName);
    const std::string shown = "item '" + ToUtf8(name) + "' ";
    const ACNode oldItem = oldItems.GetChild(name.c_str(), false);
    if (!oldItem) return shown + "is new";
    if (NodesEqual(item, oldItem, NodeLevel::Top)) return std::nullopt;
    if (item.GetFullPath() == oldItem.GetFullPath()) return shown + "was changed";
    return shown + "moved from " + ToUtf8(oldItem.GetFullPath()) + " to " + ToUtf8(item.GetFullPath());
}

// The strategy answers in a code alone. This goes its way again to tell why.
Reason ReasonOfItems(const ACNode& oldTree, const ACNode& newTree) {
    const ACNode oldItems = oldTree.GetChild(u"ScopeItems", false);
    const ACNode newItems = newTree.GetChild(u"ScopeItems", false);
    if (!newItems) return {false, "the new tree has no ScopeItems"};
    if (!oldItems) return {true, "the new tree has ScopeItems and the old one has none"};
    const std::uint64_t count = newItems.GetChildCount();
    for (std::uint64_t i = 0; i < count; ++i) {
        if (const auto reason = ItemReason(oldItems, newItems.GetChild(i, true))) return {true, *reason};
    }
    return {false, "none of the " + std::to_string(count) + " items is new or changed"};
}

bool Ask(const LoadedModule& module, const GUID& strategyId, const ACNode& oldTree, const ACNode& newTree) {
    const auto strategy = module.Create<ITriggerStrategy>(strategyId);
    const HRESULT code = strategy->OnConfigurationUpdate(oldTree.Handle(), newTree.Handle());
    Check(code, "OnConfigurationUpdate");
    return code == S_OK;
}

void Print(Style style, const std::string& strategy, bool trigger, const Reason& expected) {
    // A module of another version may see it differently.
    const std::string reason = trigger == expected.trigger ? expected.text : "for a reason that this host doesn't know";
    if (style == Style::Json) {
        const nlohmann::ordered_json line{{"strategy", strategy}, {"trigger", trigger}, {"reason", reason}};
        std::cout << line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
    } else {
        std::cout << strategy << ": " << (trigger ? "trigger, " : "no trigger, ") << reason << '\n';
    }
}

}  // namespace

int Compare(const CompareOptions& options) {
    const ACNode oldTree = ReadNodeFile(options.oldFile);
    const ACNode newTree = ReadNodeFile(options.newFile);
    const LoadedModule module(options.modulePath);
    const bool trigger = Ask(module, ScopeItemUpdateStrategyClassId, oldTree, newTree);
    Print(options.style, "ScopeItemUpdateStrategy", trigger, ReasonOfItems(oldTree, newTree));
    Print(options.style, "DefaultTriggerStrategy", Ask(module, DefaultTriggerStrategyClassId, oldTree, newTree),
          {false, "it never triggers"});
    return trigger ? ExitCode::Success : ExitCode::NoTrigger;
}

}  // namespace Host
