#include "Subsystems/ActionManager/StateWord.h"

#include <array>
#include <memory>
#include <utility>
#include <vector>

#include "Common/Base/Lock.h"
#include "Common/Components/ComponentsModule.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

namespace {

using Chunk = std::array<StateWord, 1024>;

struct WordPool {
    StateWord* Allocate() {
        if (free.empty()) AddChunk();
        StateWord* const word = free.back();
        free.pop_back();
        word->store(0);
        return word;
    }

    void AddChunk() {
        auto chunk = std::make_unique<Chunk>();
        free.reserve((chunks.size() + 1) * chunk->size());
        chunks.push_back(std::move(chunk));
        // From the end, so that words are given out in the order of their addresses.
        for (auto word = chunks.back()->rbegin(); word != chunks.back()->rend(); ++word) free.push_back(&*word);
    }

    std::vector<std::unique_ptr<Chunk>> chunks;
    std::vector<StateWord*> free;  // has room for every word
};

constinit Lock PoolLock;
constinit WordPool* Pool = nullptr;  // guarded by PoolLock

// Frees the pool at the end of the module, unless the process ends while objects of the module are alive: clients may
// use and release those even later.
struct PoolEnd {
    ~PoolEnd() {
        std::int32_t isLocked = 1;
        ComponentsModule::Instance().IsModuleLocked(&isLocked);
        const LockGuard guard(PoolLock);
        if (isLocked == 0) std::unique_ptr<WordPool>(std::exchange(Pool, nullptr)).reset();
    }
};

StateWord* AllocateWord() {
    static const PoolEnd end;
    const LockGuard guard(PoolLock);
    if (Pool == nullptr) Pool = std::make_unique<WordPool>().release();
    return Pool->Allocate();
}

}  // namespace

PooledStateWord::PooledStateWord() : word_(AllocateWord()) {}

PooledStateWord::~PooledStateWord() {
    const LockGuard guard(PoolLock);
    Pool->free.push_back(word_);
}

}  // namespace DataCollection::ActionManagement
