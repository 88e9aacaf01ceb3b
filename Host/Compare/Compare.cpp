#include "Host/Compare/Compare.h"

#include <iostream>
#include <nlohmann/json.hpp>

#include "Common/Base/Text.h"
#include "Comparison/ScopeItems.h"
#include "DataCollection/TriggerStrategy.h"
#include "Host/Base/Failure.h"
#include "Host/Base/LoadedModule.h"
#include "Host/Compare/NodeFile.h"

namespace Host {

using namespace DataCollection;
using namespace Harbor;

namespace {

struct Reason {
    bool trigger;
    std::string text;
};

std::string ItemText(const ACNode& item) {
    return "item '" + ToUtf8(item.GetName(AcnOwnName)) + "' ";
}

std::string ChangeText(const ACNode& oldItem, const ACNode& newItem) {
    if (newItem.GetFullPath() == oldItem.GetFullPath()) return "was changed";
    return "moved from " + ToUtf8(oldItem.GetFullPath()) + " to " + ToUtf8(newItem.GetFullPath());
}

// The strategy answers with a code only. The comparison that it uses tells why.
Reason ReasonOfItems(const ACNode& oldTree, const ACNode& newTree) {
    const ScopeItemComparison comparison = CompareScopeItems(oldTree, newTree);
    switch (comparison.difference) {
        case ScopeItemDifference::NewHasNone:
            return {false, "the new tree has no ScopeItems"};
        case ScopeItemDifference::OnlyNewHas:
            return {true, "the new tree has ScopeItems and the old one has none"};
        case ScopeItemDifference::ItemAdded:
            return {true, ItemText(comparison.newItem) + "is new"};
        case ScopeItemDifference::ItemChanged:
            return {true, ItemText(comparison.newItem) + ChangeText(comparison.oldItem, comparison.newItem)};
        case ScopeItemDifference::None:
            break;
    }
    return {false, "none of the " + std::to_string(comparison.itemCount) + " items is new or changed"};
}

bool Ask(const LoadedModule& module, const GUID& strategyId, const ACNode& oldTree, const ACNode& newTree) {
    const auto strategy = module.Create<ITriggerStrategy>(strategyId);
    const HRESULT code = strategy->OnConfigurationUpdate(oldTree.Handle(), newTree.Handle());
    Check(code, "OnConfigurationUpdate");
    return code == S_OK;
}

void Print(OutputFormat format, const std::string& strategy, bool trigger, const Reason& expected) {
    // A module of another version may see it differently.
    const std::string reason = trigger == expected.trigger ? expected.text : "for a reason that this host doesn't know";
    if (format == OutputFormat::Json) {
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
    Print(options.format, "ScopeItemUpdateStrategy", trigger, ReasonOfItems(oldTree, newTree));
    Print(options.format, "DefaultTriggerStrategy", Ask(module, DefaultTriggerStrategyClassId, oldTree, newTree),
          {false, "it never triggers"});
    return trigger ? ExitCode::Success : ExitCode::NoTrigger;
}

}  // namespace Host
