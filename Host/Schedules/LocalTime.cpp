#include "Host/Schedules/LocalTime.h"

#include "Common/Base/Format.h"
#include "Common/Base/Text.h"
#include "Harbor/Failure.h"
#include "Platform/Time.h"

namespace Host {

using DataCollection::ActionManagement::FromFileTime;
using DataCollection::ActionManagement::ToFileTime;

namespace {

Platform::FILETIME ToLocal(const TimePoint& time) {
    const Platform::FILETIME utc = ToFileTime(time);
    Platform::FILETIME local{};
    Harbor::ThrowLastErrorIf(Platform::FileTimeToLocalFileTime(&utc, &local) == 0, "Convert to local time");
    return local;
}

std::string Text(const Platform::FILETIME& local, char16_t separator) {
    Platform::SYSTEMTIME fields{};
    Harbor::ThrowLastErrorIf(Platform::FileTimeToSystemTime(&local, &fields) == 0, "Get calendar fields");
    return Harbor::ToUtf8(Harbor::FormatWide(u"%04u-%02u-%02u%s%02u:%02u:%02u.%03u", fields.wYear, fields.wMonth,
                                             fields.wDay, std::u16string_view(&separator, 1), fields.wHour,
                                             fields.wMinute, fields.wSecond, fields.wMilliseconds));
}

}  // namespace

TimePoint CurrentTime() {
    return std::chrono::time_point_cast<TimePoint::duration>(std::chrono::system_clock::now());
}

std::chrono::seconds LocalOffset(const TimePoint& time) {
    return std::chrono::round<std::chrono::seconds>(FromFileTime(ToLocal(time)) - time);
}

std::int32_t LocalBias(const TimePoint& time) {
    return static_cast<std::int32_t>(-LocalOffset(time).count());
}

std::string OffsetText(std::chrono::seconds offset) {
    const std::u16string_view sign = offset.count() < 0 ? u"-" : u"+";
    const auto minutes =
        static_cast<std::uint32_t>(std::chrono::round<std::chrono::minutes>(std::chrono::abs(offset)).count());
    return Harbor::ToUtf8(Harbor::FormatWide(u"%s%02u:%02u", sign, minutes / 60, minutes % 60));
}

std::string LocalTimeText(const TimePoint& time) {
    return Text(ToLocal(time), u' ');
}

std::string IsoTimeText(const TimePoint& time) {
    const Platform::FILETIME local = ToLocal(time);
    return Text(local, u'T') + OffsetText(LocalOffset(time));
}

std::string UtcTimeText(const TimePoint& time) {
    return Text(ToFileTime(time), u'T') + "Z";
}

}  // namespace Host
