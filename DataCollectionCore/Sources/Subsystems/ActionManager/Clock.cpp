#include "Subsystems/ActionManager/Clock.h"

namespace DataCollection::ActionManagement {

TimePoint CurrentTime() noexcept {
    Platform::FILETIME now{};
    Platform::GetSystemTimePreciseAsFileTime(&now);
    return FromFileTime(now);
}

}  // namespace DataCollection::ActionManagement
