// A list that grows in chunks. An entry does not move when others are added, so that one thread may go through the
// entries that it knows of while another thread adds more.
#pragma once

#include <algorithm>
#include <array>
#include <list>
#include <utility>

namespace DataCollection::ActionManagement {

template <class Entry>
class ChunkedList {
public:
    // Adds an entry at the end. Out of memory throws std::bad_alloc and adds nothing.
    void Add(Entry entry) {
        if (size_ == chunks_.size() * ChunkSize) chunks_.emplace_back();
        chunks_.back()[size_ % ChunkSize] = std::move(entry);
        ++size_;
    }

    std::size_t Size() const noexcept { return size_; }

    // Visits the first `count` entries in their order. Another thread may add entries at the same time.
    template <class Visit>
    void ForFirst(std::size_t count, Visit visit) {
        if (count == 0) return;
        for (auto chunk = chunks_.begin();; ++chunk) {
            const std::size_t here = std::min(count, ChunkSize);
            for (std::size_t i = 0; i < here; ++i) visit((*chunk)[i]);
            count -= here;
            if (count == 0) return;  // what follows the last chunk may change at the same time
        }
    }

    // Drops each entry that `keep` refuses before it looks at the next; the others move up in their order. `keep` must
    // not throw.
    template <class Keep>
    void Retain(Keep keep) noexcept {
        auto chunk = chunks_.begin();
        std::size_t kept = 0;
        ForFirst(size_, [&](Entry& entry) {
            if (!keep(entry)) {
                entry = Entry();
                return;
            }
            if (kept != 0 && kept % ChunkSize == 0) ++chunk;
            Entry& place = (*chunk)[kept++ % ChunkSize];
            if (&place != &entry) place = std::move(entry);
        });
        size_ = kept;
        while (chunks_.size() * ChunkSize >= size_ + ChunkSize) chunks_.pop_back();
    }

private:
    static constexpr std::size_t ChunkSize = 1024;

    std::list<std::array<Entry, ChunkSize>> chunks_;
    std::size_t size_ = 0;
};

}  // namespace DataCollection::ActionManagement
