// The actions of a subscription, in the order of their attachment. The first one needs no memory of its own, because
// most subscriptions have only one.
#pragma once

#include <memory>
#include <vector>

#include "DataCollection/Action.h"
#include "Harbor/ComponentPtr.h"

namespace DataCollection::ActionManagement {

class AttachedActions {
public:
    using Action = Harbor::ComponentPtr<IActionControl>;

    // Makes room for one more action, so that Add cannot fail. Out of memory throws std::bad_alloc and changes nothing.
    void ReserveForOneMore() {
        if (!first_) return;
        if (others_ == nullptr) others_ = std::make_unique<std::vector<Action>>();
        others_->reserve(others_->size() + 1);
    }
    void Add(IActionControl* action) noexcept {
        if (first_) {
            others_->emplace_back(action);
        } else {
            first_.Reset(action);
        }
    }
    void Clear() noexcept {
        first_.Reset();
        others_.reset();
    }

    std::size_t Size() const noexcept { return others_ != nullptr ? 1 + others_->size() : first_ ? 1 : 0; }
    const Action& operator[](std::size_t index) const noexcept { return index == 0 ? first_ : (*others_)[index - 1]; }

private:
    Action first_;
    std::unique_ptr<std::vector<Action>> others_;
};

}  // namespace DataCollection::ActionManagement
