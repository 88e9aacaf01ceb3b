// Lets the Nth call of a kind fail on this thread. The functions that may fail are replaced in this program; elsewhere
// they do their work.
#pragma once

#include "Harbor/ResultCodes.h"

namespace InjectedFailure {

enum class Source { None, Store, Broker, Memory, Platform };

// The code by which a failure of the node store and of the broker is known again.
inline constexpr Harbor::HRESULT Code = Harbor::MakeHResult(0x80041234);
// The last error that a function of the platform layer leaves.
inline constexpr std::uint32_t LastError = 1450;  // ERROR_NO_SYSTEM_RESOURCES

// The Nth call inside Scopes will fail, once.
void Arm(Source source, int nth) noexcept;
// Whether it has failed meanwhile.
[[nodiscard]] bool HasHappened() noexcept;

// Where calls may fail, or inside such a scope where they may not.
class Scope {
public:
    explicit Scope(bool mayFail) noexcept;
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    ~Scope();

private:
    const bool outside_;
};

}  // namespace InjectedFailure
