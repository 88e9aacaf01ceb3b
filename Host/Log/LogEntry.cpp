#include "Host/Log/LogEntry.h"

#include <algorithm>

#include "Common/Base/Text.h"
#include "Host/Base/Number.h"
#include "Host/Schedules/LocalTime.h"

namespace Host {
namespace {

constexpr std::u16string_view TimeForm = u"0000-00-00 00:00:00.0000000";  // a 0 is any digit
constexpr std::u16string_view Bar = u" | ";
constexpr std::u16string_view SeverityEnd = u" |";
constexpr std::u16string_view SourceEnd = u"| ";
constexpr std::size_t SeverityWidth = 4;
constexpr std::size_t IdWidth = 5;
constexpr std::size_t LongestSource = 64;  // name, line number and the spaces after them

bool IsDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

bool IsTime(std::u16string_view text) {
    return text.size() == TimeForm.size() && IsTimeBeginning(text);
}

// Takes the parts of a line from left to right.
class Fields {
public:
    explicit Fields(std::u16string_view text) : rest_(text) {}

    std::u16string_view Take(std::size_t count) {
        const auto taken = rest_.substr(0, count);
        rest_.remove_prefix(taken.size());
        ok_ = ok_ && taken.size() == count;
        return taken;
    }
    void Skip(std::u16string_view expected) { ok_ = Take(expected.size()) == expected && ok_; }
    std::uint32_t TakeNumber(std::size_t width) { return Number(Harbor::Trim(Take(width), u" ")); }

    std::uint32_t Number(std::u16string_view digits) {
        ok_ = ok_ && !digits.empty() && digits.size() < 10 && std::ranges::all_of(digits, IsDigit);
        if (!ok_) return 0;
        std::uint32_t number = 0;
        for (const char16_t digit : digits) number = number * 10 + (digit - u'0');
        return number;
    }

    // Takes what is before `end`, which is not taken itself.
    std::u16string_view TakeUntil(std::u16string_view end, std::size_t limit) {
        return Take(rest_.substr(0, limit).find(end));
    }
    std::u16string_view Rest() const { return rest_; }
    bool Ok() const { return ok_; }

private:
    std::u16string_view rest_;
    bool ok_ = true;
};

}  // namespace

std::optional<LogEntry> ParseLogEntry(std::u16string_view text) {
    Fields fields(text);
    LogEntry entry;
    entry.time = fields.Take(TimeForm.size());
    if (!IsTime(entry.time)) return std::nullopt;
    fields.Skip(Bar);
    entry.severity = Harbor::TrimEnd(fields.Take(SeverityWidth), u" ");
    fields.Skip(SeverityEnd);
    entry.process = fields.TakeNumber(IdWidth);
    fields.Skip(u" ");
    entry.thread = fields.TakeNumber(IdWidth);
    fields.Skip(Bar);
    const auto source = Harbor::TrimEnd(fields.TakeUntil(SourceEnd, LongestSource), u" ");
    fields.Skip(SourceEnd);
    const std::size_t colon = source.rfind(u':');
    if (!fields.Ok() || colon == source.npos) return std::nullopt;
    entry.source = source.substr(0, colon);
    entry.line = fields.Number(source.substr(colon + 1));
    entry.message = fields.Rest();
    return fields.Ok() ? std::optional(entry) : std::nullopt;
}

std::string IsoLogTime(std::u16string_view time) {
    std::string text = Harbor::ToUtf8(time);
    const auto number = [&](std::size_t at, std::size_t length) {
        return ParseNumber<unsigned>(std::string_view(text).substr(at, length)).value_or(0);
    };
    using namespace std::chrono;
    const year_month_day date{year(static_cast<int>(number(0, 4))), month(number(5, 2)), day(number(8, 2))};
    if (!date.ok() || date.year() < year(1970)) return text;
    const TimePoint local = sys_days{date} + hours{number(11, 2)} + minutes{number(14, 2)} + seconds{number(17, 2)};
    text[10] = 'T';
    return text + OffsetText(LocalOffset(local - LocalOffset(local)));
}

bool IsTimeBeginning(std::u16string_view text) {
    return std::ranges::equal(text, TimeForm.substr(0, text.size()),
                              [](char16_t c, char16_t form) { return form == u'0' ? IsDigit(c) : c == form; });
}

bool IsBannerEdge(std::u16string_view text) {
    return text.size() == BannerWidth && text.find_first_not_of(u'*') == text.npos;
}

std::size_t FindLogBeginning(std::u16string_view text, std::size_t from) {
    for (std::size_t bar = text.find(Bar, from); bar != text.npos; bar = text.find(Bar, bar + 1)) {
        if (bar < from + TimeForm.size()) continue;
        const std::size_t begin = bar - TimeForm.size();
        if (ParseLogEntry(text.substr(begin))) return begin;
    }
    const bool endsLikeBanner =
        text.size() >= from + BannerWidth && IsBannerEdge(text.substr(text.size() - BannerWidth));
    return endsLikeBanner ? text.size() - BannerWidth : text.npos;
}

}  // namespace Host
