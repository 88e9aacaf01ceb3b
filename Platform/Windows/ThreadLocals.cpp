// The storage of thread_local variables for compilers that ask a function of their runtime for it. The runtime's own
// function keeps a slot of the process for ever, so that a module which is loaded and unloaded many times exhausts the
// slots, and it frees the variables of the unloading thread before the last destructors have used them. This one
// replaces it: it returns its slot, and all variables of all threads, as the last thing of an unload.
#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "Platform/Threads.h"

#include "Native.h"

namespace {

// How the compiler describes a variable. `number` is 0 until the variable is used for the first time.
struct Variable {
    std::size_t size;
    std::size_t alignment;
    std::atomic<std::uintptr_t> number;
    const void* initialValue;  // null: all bytes are 0
};

// The variables of one thread, by number. Memory comes from the C library: the calls may come from an allocation.
struct Values {
    std::size_t count;
    void* addresses[1];
};

constexpr std::uintptr_t GrowthStep = 16;

constinit Platform::SRWLOCK Lock{};
constinit std::uintptr_t LastNumber = 0;                // guarded by Lock
constinit std::atomic<DWORD> Slot{FLS_OUT_OF_INDEXES};  // changed with Lock held

void* OrAbort(void* memory) noexcept {
    if (memory == nullptr) std::abort();
    return memory;
}

// The system calls it at the end of a thread, and for every thread when the slot is returned.
void WINAPI FreeValues(void* argument) noexcept {
    auto* const values = static_cast<Values*>(argument);
    if (values == nullptr) return;
    std::for_each_n(values->addresses, values->count, [](void* address) { _aligned_free(address); });
    std::free(values);
}

DWORD GetSlot() noexcept {
    const DWORD known = Slot.load(std::memory_order_acquire);
    if (known != FLS_OUT_OF_INDEXES) return known;
    Platform::AcquireSRWLockExclusive(&Lock);
    DWORD slot = Slot.load(std::memory_order_relaxed);
    if (slot == FLS_OUT_OF_INDEXES) {
        slot = ::FlsAlloc(&FreeValues);
        if (slot == FLS_OUT_OF_INDEXES) std::abort();
        Slot.store(slot, std::memory_order_release);
    }
    Platform::ReleaseSRWLockExclusive(&Lock);
    return slot;
}

std::uintptr_t NumberOf(Variable& variable) noexcept {
    const std::uintptr_t known = variable.number.load(std::memory_order_acquire);
    if (known != 0) return known;
    Platform::AcquireSRWLockExclusive(&Lock);
    std::uintptr_t number = variable.number.load(std::memory_order_relaxed);
    if (number == 0) {
        number = ++LastNumber;
        variable.number.store(number, std::memory_order_release);
    }
    Platform::ReleaseSRWLockExclusive(&Lock);
    return number;
}

// Makes room for at least `count` variables of the calling thread.
Values& Grow(Values* values, std::size_t count) noexcept {
    const std::size_t before = values != nullptr ? values->count : 0;
    const std::size_t after = count + GrowthStep;
    auto* const grown = static_cast<Values*>(OrAbort(std::realloc(values, sizeof(Values) + after * sizeof(void*))));
    std::fill(grown->addresses + before, grown->addresses + after, nullptr);
    grown->count = after;
    ::FlsSetValue(GetSlot(), grown);
    return *grown;
}

void* MakeVariable(const Variable& variable) noexcept {
    void* const memory = OrAbort(_aligned_malloc(variable.size, variable.alignment));
    if (variable.initialValue != nullptr) {
        std::memcpy(memory, variable.initialValue, variable.size);
    } else {
        std::memset(memory, 0, variable.size);
    }
    return memory;
}

struct SlotReturn {
    ~SlotReturn() {
        if (const DWORD slot = Slot.exchange(FLS_OUT_OF_INDEXES); slot != FLS_OUT_OF_INDEXES) ::FlsFree(slot);
    }
};
// Constructed before all other objects of the binary, and so destroyed after them.
[[gnu::init_priority(101)]] SlotReturn ReturnSlotAtUnload;

}  // namespace

// The compiler calls it at each use of a thread_local variable.
extern "C" void* __emutls_get_address(Variable* variable) {
    const std::uintptr_t number = NumberOf(*variable);
    auto* values = static_cast<Values*>(::FlsGetValue(GetSlot()));
    if (values == nullptr || values->count < number) values = &Grow(values, number);
    void*& address = values->addresses[number - 1];
    if (address == nullptr) address = MakeVariable(*variable);
    return address;
}
