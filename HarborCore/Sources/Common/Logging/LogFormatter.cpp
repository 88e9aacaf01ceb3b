#include "Common/Logging/LogFormatter.h"

#include <algorithm>

#include "Common/Base/FileTime.h"
#include "Platform/Process.h"

namespace Harbor {
namespace {

constexpr std::size_t LongestSourceName = 26;
constexpr std::size_t SourceColumnWidth = 30;  // name and line number, without the colon between them
constexpr std::size_t LeastLineNumberWidth = 4;
constexpr std::int32_t DeepestIndentation = 30;
constexpr std::size_t SeverityWidth = 4;
constexpr std::int64_t TicksPerSecond = 10'000'000;
constexpr std::size_t HeadRoom = 160;  // at least the length of a line without its message

// Writes into a buffer that is large enough.
class LineWriter {
public:
    explicit LineWriter(WideChar* at) noexcept : at_(at) {}

    void Put(std::u16string_view text) noexcept { at_ = std::copy(text.begin(), text.end(), at_); }
    void Fill(WideChar c, std::size_t count) noexcept { at_ = std::fill_n(at_, count, c); }

    // `number` must have at most `width` digits.
    void PutDigits(std::uint32_t number, std::size_t width) noexcept {
        for (std::size_t i = width; i > 0; --i, number /= 10) at_[i - 1] = static_cast<WideChar>(u'0' + number % 10);
        at_ += width;
    }
    // `width` is a minimum: a longer number is not cut.
    void PutRightAligned(std::uint32_t number, std::size_t width, WideChar padding = u' ') noexcept {
        const std::u16string_view digits = Digits(number);
        Fill(padding, width - std::min(width, digits.size()));
        Put(digits);
    }
    void PutLeftAligned(std::uint32_t number, std::size_t width) noexcept {
        const std::u16string_view digits = Digits(number);
        Put(digits);
        Fill(u' ', width - std::min(width, digits.size()));
    }
    WideChar* Position() const noexcept { return at_; }

private:
    std::u16string_view Digits(std::uint32_t number) noexcept {
        WideChar* at = std::end(digits_);
        do {
            *--at = static_cast<WideChar>(u'0' + number % 10);
            number /= 10;
        } while (number != 0);
        return {at, static_cast<std::size_t>(std::end(digits_) - at)};
    }

    WideChar* at_;
    WideChar digits_[10];
};

// The local date and time of one second, as "2024-03-05 07:08:09.". Each thread keeps the second of its last line.
struct SecondText {
    std::int64_t second = -1;  // since 1601, in UTC
    std::size_t length = 0;
    WideChar text[32] = {};

    std::u16string_view Of(std::int64_t wanted, const Platform::FILETIME& time) noexcept {
        if (wanted != second) Make(wanted, time);
        return {text, length};
    }

private:
    void Make(std::int64_t wanted, const Platform::FILETIME& time) noexcept {
        Platform::FILETIME local{};
        Platform::SYSTEMTIME fields{};
        const bool isLocal = Platform::FileTimeToLocalFileTime(&time, &local) != 0;
        const bool hasFields = Platform::FileTimeToSystemTime(&local, &fields) != 0;
        second = isLocal && hasFields ? wanted : -1;
        LineWriter line(text);
        line.PutRightAligned(fields.wYear, 4, u'0');
        line.Put(u"-");
        line.PutDigits(fields.wMonth, 2);
        line.Put(u"-");
        line.PutDigits(fields.wDay, 2);
        line.Put(u" ");
        line.PutDigits(fields.wHour, 2);
        line.Put(u":");
        line.PutDigits(fields.wMinute, 2);
        line.Put(u":");
        line.PutDigits(fields.wSecond, 2);
        line.Put(u".");
        length = static_cast<std::size_t>(line.Position() - text);
    }
};
constinit thread_local SecondText LastSecond;

// The offset of a zone is a number of seconds, so the fraction of the second is the same in UTC.
void PutTime(LineWriter& line, const Platform::FILETIME& time) noexcept {
    const auto ticks = static_cast<std::int64_t>(TicksOf(time));
    line.Put(LastSecond.Of(ticks / TicksPerSecond, time));
    line.PutDigits(static_cast<std::uint32_t>(ticks % TicksPerSecond), 7);
}

void PutSource(LineWriter& line, const SourcePlace& place) noexcept {
    const std::u16string_view path = place.file;
    const auto isSeparator = [](WideChar c) { return c == u'\\' || c == u'/'; };
    const std::u16string_view name(std::find_if(path.rbegin(), path.rend(), isSeparator).base(), path.end());
    line.Put(name.substr(0, LongestSourceName));
    line.Put(u":");
    line.PutLeftAligned(place.line,
                        name.size() < LongestSourceName ? SourceColumnWidth - name.size() : LeastLineNumberWidth);
}

}  // namespace

Platform::FILETIME LogTimeStamp() noexcept {
    Platform::FILETIME now{};
    Platform::GetSystemTimePreciseAsFileTime(&now);
    return now;
}

void DefaultLogFormatter::Format(TextBuffer& result, std::uint32_t severity, const SourcePlace& place,
                                 std::u16string_view message, std::int32_t indentation,
                                 const Platform::FILETIME* time) const {
    const Platform::FILETIME stamp = time == nullptr ? LogTimeStamp() : *time;
    const auto levels = static_cast<std::size_t>(std::clamp(indentation, 0, DeepestIndentation));
    const std::u16string_view name = LogSeverityName(severity).substr(0, SeverityWidth);

    result.Truncate(0);
    LineWriter line(result.Extend(HeadRoom + message.size()));
    PutTime(line, stamp);
    line.Put(u" | ");
    line.Put(name);
    line.Fill(u' ', SeverityWidth - name.size());
    line.Put(u" |");
    line.PutRightAligned(Platform::GetCurrentProcessId() & 0xFFFF, 5);
    line.Put(u" ");
    line.PutRightAligned(Platform::GetCurrentThreadId() & 0xFFFF, 5);
    line.Put(u" | ");
    PutSource(line, place);
    line.Put(u"| ");
    line.Fill(u' ', levels * 2);
    line.Put(message);
    line.Put(u"\r\n");
    result.Truncate(static_cast<std::size_t>(line.Position() - result.View().data()));
}

}  // namespace Harbor
