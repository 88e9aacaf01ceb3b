// The clock of the cycle.
#pragma once

#include "Schedules/TimePoint.h"

namespace DataCollection::ActionManagement {

// The system's wall clock. Any thread.
[[nodiscard]] TimePoint CurrentTime() noexcept;

}  // namespace DataCollection::ActionManagement
