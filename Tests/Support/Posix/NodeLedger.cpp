// Replaces each function of the node store that opens or closes a handle or a context. This is a library of its own
// that is linked before the store's: so it also sees the calls of a module that is loaded at run time.
#include "Support/NodeLedger.h"

#include <dlfcn.h>

#include <atomic>

#include "Harbor/ResultCodes.h"
#include "NodeFabric/Authoring.h"

using Harbor::HRESULT;
using Harbor::WideChar;

namespace {

std::atomic<std::uint64_t> checksum;

// Mixes the bits of an address, so that a sum of several values is that of no others.
std::uint64_t Mixed(const void* value) {
    auto bits = reinterpret_cast<std::uintptr_t>(value) * 0x9E3779B97F4A7C15;
    bits = (bits ^ bits >> 29) * 0xBF58476D1CE4E5B9;
    return bits ^ bits >> 32;
}

template <class Opened>
HRESULT AddIfOpened(HRESULT code, Opened* out) {
    if (Harbor::Succeeded(code)) checksum += Mixed(*out);
    return code;
}

}  // namespace

std::pair<std::uint64_t, std::uint64_t> OpenHandles() {
    std::uint64_t count = ~std::uint64_t{0};
    AcnGetOpenHandleCount(&count);
    return {count, checksum};
}

// The store's own function.
#define NEXT(name) reinterpret_cast<decltype(&name)>(dlsym(RTLD_NEXT, #name))

// A function that opens what it stores in `out`, and one that closes its argument.
#define OPENING(name, parameters, ...)              \
    HRESULT name parameters {                       \
        static const auto next = NEXT(name);        \
        return AddIfOpened(next(__VA_ARGS__), out); \
    }
#define CLOSING(name, Handle)                \
    HRESULT name(Handle closed) {            \
        static const auto next = NEXT(name); \
        checksum -= Mixed(closed);           \
        return next(closed);                 \
    }

extern "C" {

OPENING(AcnCreateNode, (const WideChar* name, const WideChar* type, AcnHandle* out), name, type, out)
OPENING(AcnDuplicateNodeHandle, (AcnHandle node, AcnHandle* out), node, out)
OPENING(AcnCloneNode, (AcnHandle node, std::uint32_t depth, std::uint32_t flags, AcnHandle* out), node, depth, flags,
        out)
OPENING(AcnGetParent, (AcnHandle node, AcnHandle* out), node, out)
OPENING(AcnGetChildByIndex, (AcnHandle node, std::uint64_t index, AcnHandle* out), node, index, out)
OPENING(AcnGetChildByName, (AcnHandle node, const WideChar* name, AcnHandle* out), node, name, out)
OPENING(AcnStartSerialization,
        (std::int32_t kind, std::uint32_t flags, AcnSerializationCallback callback, void* user, AcnContext* out), kind,
        flags, callback, user, out)
CLOSING(AcnCloseNodeHandle, AcnHandle)
CLOSING(AcnCloseSerializationContext, AcnContext)
}
