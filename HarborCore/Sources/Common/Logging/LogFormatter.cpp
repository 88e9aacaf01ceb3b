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
constexpr std::uint64_t TicksPerMillisecond = 10000;
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

void PutTime(LineWriter& line, const Platform::FILETIME& time) noexcept {
    Platform::FILETIME local{};
    Platform::SYSTEMTIME fields{};
    Platform::FileTimeToLocalFileTime(&time, &local);
    Platform::FileTimeToSystemTime(&local, &fields);
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
    line.PutDigits(fields.wMilliseconds, 3);
    line.PutDigits(static_cast<std::uint32_t>(TicksOf(local) % TicksPerMillisecond), 4);
}

void PutSource(LineWriter& line, const SourcePlace& place) noexcept {
    const std::u16string_view path = place.file;
    const std::u16string_view name = path.substr(path.find_last_of(u"\\/") + 1);
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

void DefaultLogFormatter::Format(WideString& result, std::uint32_t severity, const SourcePlace& place,
                                 std::u16string_view message, std::int32_t indentation,
                                 const Platform::FILETIME* time) const {
    const Platform::FILETIME stamp = time == nullptr ? LogTimeStamp() : *time;
    const auto levels = static_cast<std::size_t>(std::clamp(indentation, 0, DeepestIndentation));
    const std::u16string_view name = LogSeverityName(severity).substr(0, SeverityWidth);

    result.resize(HeadRoom + message.size());
    LineWriter line(result.data());
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
    result.resize(static_cast<std::size_t>(line.Position() - result.data()));
}

}  // namespace Harbor
