#include "ChildList.h"

#include <algorithm>

#include "Node.h"

namespace NodeFabric {

namespace {

constexpr std::size_t LargestUnindexedCount = 8;
constexpr std::size_t FirstCapacity = 4;

}  // namespace

void ChildList::Append(AcnHandle child) {
    // Reserves memory first: after the index has the child, nothing may fail.
    if (ordered_.size() == ordered_.capacity()) ordered_.reserve(std::max(FirstCapacity, 2 * ordered_.size()));
    if (index_ != nullptr || ordered_.size() >= LargestUnindexedCount) AddToIndex(child);
    ordered_.push_back(child);
}

void ChildList::AddToIndex(AcnHandle child) {
    if (index_ == nullptr) {
        auto index = std::make_unique<Index>();
        for (const AcnHandle earlier : ordered_) index->try_emplace(earlier->name, earlier);
        index_ = std::move(index);
    }
    index_->try_emplace(child->name, child);
}

bool ChildList::Remove(AcnHandle child) noexcept {
    const auto place = std::ranges::find(ordered_, child);
    if (place == ordered_.end()) return false;
    ordered_.erase(place);
    RemoveFromIndex(child);
    return true;
}

void ChildList::RemoveFromIndex(AcnHandle child) noexcept {
    if (index_ == nullptr) return;
    const auto entry = index_->find(child->name);
    if (entry == index_->end() || entry->second != child) return;
    // The key refers to the name in the removed child, so it must be replaced together with the value.
    auto node = index_->extract(entry);
    if (const AcnHandle next = FindInLine(child->name)) {
        node.key() = next->name;
        node.mapped() = next;
        index_->insert(std::move(node));
    }
}

AcnHandle ChildList::Find(std::u16string_view name) const noexcept {
    if (index_ == nullptr) return FindInLine(name);
    const auto found = index_->find(name);
    return found != index_->end() ? found->second : nullptr;
}

AcnHandle ChildList::FindInLine(std::u16string_view name) const noexcept {
    const auto found = std::ranges::find_if(ordered_, [name](AcnHandle child) { return child->name == name; });
    return found != ordered_.end() ? *found : nullptr;
}

AcnHandle ChildList::PopForDestruction() noexcept {
    const AcnHandle last = ordered_.back();
    ordered_.pop_back();
    return last;
}

}  // namespace NodeFabric
