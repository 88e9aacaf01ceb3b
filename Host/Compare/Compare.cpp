#include "Host/Compare/Compare.h"

#include <iostream>

#include "Common/Base/Text.h"
#include "Comparison/ScopeItems.h"
#include "DataCollection/TriggerStrategy.h"
#include "Harbor/Module.h"
#include "Host/Base/Failure.h"
#include "Host/Base/Json.h"
#include "Host/Base/UserFile.h"
#include "Host/Compare/NodeFile.h"

namespace Host {

using namespace DataCollection;
using namespace Harbor;

namespace {

struct Decision {
    bool trigger;
    std::string reason;
};

std::string ItemText(const ACNode& item) {
    return "item '" + ToUtf8(item.GetName(AcnOwnName)) + "' ";
}

std::string ChangeText(const ACNode& oldItem, const ACNode& newItem) {
    if (newItem.GetFullPath() == oldItem.GetFullPath()) return "was changed";
    return "moved from " + ToUtf8(oldItem.GetFullPath()) + " to " + ToUtf8(newItem.GetFullPath());
}

// The strategy returns a code only. The comparison that it uses gives the reason.
Decision DecisionByItems(const ACNode& oldTree, const ACNode& newTree) {
    const ScopeItemComparison comparison = CompareScopeItems(oldTree, newTree);
    switch (comparison.difference) {
        case ScopeItemDifference::NewHasNone:
            return {.trigger = false, .reason = "the new tree has no ScopeItems"};
        case ScopeItemDifference::OnlyNewHas:
            return {.trigger = true, .reason = "the new tree has ScopeItems and the old one has none"};
        case ScopeItemDifference::ItemAdded:
            return {.trigger = true, .reason = ItemText(comparison.newItem) + "is new"};
        case ScopeItemDifference::ItemChanged:
            return {.trigger = true,
                    .reason = ItemText(comparison.newItem) + ChangeText(comparison.oldItem, comparison.newItem)};
        case ScopeItemDifference::None:
            break;
    }
    return {.trigger = false,
            .reason = "none of the " + std::to_string(comparison.itemCount) + " items is new or changed"};
}

bool Triggers(const Module& module, const GUID& strategyId, const ACNode& oldTree, const ACNode& newTree) {
    const auto strategy = Create<ITriggerStrategy>(module, strategyId);
    const HRESULT code = strategy->OnConfigurationUpdate(oldTree.Handle(), newTree.Handle());
    ThrowIfFailed(code, "OnConfigurationUpdate");
    return code == S_OK;
}

void Print(OutputFormat format, const std::string& strategy, bool trigger, const Decision& expected) {
    // A module of another version may decide in another way.
    const std::string reason =
        trigger == expected.trigger ? expected.reason : "for a reason that this host does not know";
    if (format == OutputFormat::Json) {
        std::cout << JsonLine({{"strategy", strategy}, {"trigger", trigger}, {"reason", reason}});
    } else {
        std::cout << strategy << ": " << (trigger ? "trigger, " : "no trigger, ") << reason << '\n';
    }
}

}  // namespace

int Compare(const CompareOptions& options) {
    const ACNode oldTree = ReadNodeFile(options.oldFile);
    const ACNode newTree = ReadNodeFile(options.newFile);
    const Module module = Module::Load(PathOf(options.modulePath));
    const bool trigger = Triggers(module, ScopeItemUpdateStrategyClassId, oldTree, newTree);
    Print(options.format, "ScopeItemUpdateStrategy", trigger, DecisionByItems(oldTree, newTree));
    Print(options.format, "DefaultTriggerStrategy", Triggers(module, DefaultTriggerStrategyClassId, oldTree, newTree),
          {.trigger = false, .reason = "it never triggers"});
    return trigger ? ExitCode::Success : ExitCode::NoTrigger;
}

}  // namespace Host
