#include "Schedules/TimeZoneBias.h"

#include "Platform/Errors.h"
#include "Platform/Time.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

HRESULT GetLocalTimeZoneBias(std::int32_t& bias) noexcept {
    constexpr std::int32_t secondsPerMinute = 60;
    Platform::DYNAMIC_TIME_ZONE_INFORMATION zone{};
    switch (Platform::GetDynamicTimeZoneInformation(&zone)) {
        case Platform::TIME_ZONE_ID_UNKNOWN:
            bias = zone.Bias * secondsPerMinute;
            return S_OK;
        case Platform::TIME_ZONE_ID_STANDARD:
            bias = (zone.Bias + zone.StandardBias) * secondsPerMinute;
            return S_OK;
        case Platform::TIME_ZONE_ID_DAYLIGHT:
            bias = (zone.Bias + zone.DaylightBias) * secondsPerMinute;
            return S_OK;
        case Platform::TIME_ZONE_ID_INVALID:
            return HResultFromWin32(Platform::GetLastError());
        default:
            return E_FAIL;
    }
}

}  // namespace DataCollection::ActionManagement
