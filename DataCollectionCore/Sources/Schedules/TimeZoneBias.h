// The offset between local time and UTC that is in force.
#pragma once

#include "Harbor/ResultCodes.h"

namespace DataCollection::ActionManagement {

// Stores the number of seconds to add to local time to get UTC, by the offset that the process's time zone has now. On
// failure returns the system's code and stores nothing. Any thread.
[[nodiscard]] Harbor::HRESULT GetLocalTimeZoneBias(std::int32_t& bias) noexcept;

}  // namespace DataCollection::ActionManagement
