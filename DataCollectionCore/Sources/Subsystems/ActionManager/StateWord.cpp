#include "Subsystems/ActionManager/StateWord.h"

#include <array>
#include <memory>
#include <vector>

#include "Common/Base/Lock.h"
#include "Common/Base/SingletonHolder.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

namespace {

// Set when the pool has ended with the module or the process. An object that a client releases even later does without.
constinit std::atomic<bool> PoolHasEnded{false};

class WordPool {
public:
    WordPool() = default;
    WordPool(const WordPool&) = delete;
    WordPool& operator=(const WordPool&) = delete;
    ~WordPool() {
        PoolHasEnded.store(true);
        const bool isUnused = free_.size() == chunks_.size() * std::tuple_size_v<Chunk>;
        if (isUnused) return;
        for (auto& chunk : chunks_) (void)chunk.release();  // late objects still have their words in it
    }

    StateWord* Allocate() {
        const LockGuard guard(lock_);
        if (free_.empty()) AddChunk();
        StateWord* const word = free_.back();
        free_.pop_back();
        word->store(0);
        return word;
    }

    void Free(StateWord* word) noexcept {
        const LockGuard guard(lock_);
        free_.push_back(word);  // there is room for every word
    }

private:
    using Chunk = std::array<StateWord, 1024>;

    void AddChunk() {
        auto chunk = std::make_unique<Chunk>();
        free_.reserve((chunks_.size() + 1) * chunk->size());
        chunks_.push_back(std::move(chunk));
        // From the end, so that words are given out in the order of their addresses.
        for (auto word = chunks_.back()->rbegin(); word != chunks_.back()->rend(); ++word) free_.push_back(&*word);
    }

    Lock lock_;  // guards all below
    std::vector<std::unique_ptr<Chunk>> chunks_;
    std::vector<StateWord*> free_;
};

constinit SingletonHolder<WordPool> Holder;

}  // namespace

PooledStateWord::PooledStateWord() : word_(Holder.Get().Allocate()) {}

PooledStateWord::~PooledStateWord() {
    if (!PoolHasEnded.load()) Holder.Get().Free(word_);
}

}  // namespace DataCollection::ActionManagement
