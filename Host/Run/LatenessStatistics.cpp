#include "Host/Run/LatenessStatistics.h"

namespace Host {
namespace {

using Tenths = std::chrono::duration<std::int64_t, std::ratio<1, 10'000>>;

double Milliseconds(std::int64_t tenths) noexcept {
    return static_cast<double>(tenths) / 10;
}

}  // namespace

double InMilliseconds(Ticks time) noexcept {
    return Milliseconds(std::chrono::floor<Tenths>(time).count());
}

void LatenessStatistics::Add(std::optional<Ticks> lateness) {
    ++calls_;
    if (!lateness) return;
    ++callsByTenths_[std::chrono::floor<Tenths>(*lateness).count()];
    ++measured_;
}

std::optional<LatenessStatistics::Range> LatenessStatistics::LatenessRange() const {
    if (measured_ == 0) return std::nullopt;
    auto middle = callsByTenths_.begin();
    for (std::uint64_t before = middle->second; before < (measured_ + 1) / 2; before += middle->second) ++middle;
    return Range{Milliseconds(callsByTenths_.begin()->first), Milliseconds(middle->first),
                 Milliseconds(callsByTenths_.rbegin()->first)};
}

}  // namespace Host
