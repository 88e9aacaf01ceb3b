// The bytes of a log, whole and damaged.
#include <gmock/gmock.h>

#include "Common/Text.h"
#include "Host/LogParser.h"
#include "Host/SlowestCalls.h"

using namespace Host;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

const std::u16string Head = u"2024-03-05 07:08:09.0120345 | DBG  | 4660    86 | ActionImpl:29                  | ";
const std::u16string Edge = std::u16string(100, u'*') + u"\r\n";
const std::u16string Banner = Edge + u"*** Module: M\r\n*** Command line: c\r\n" + Edge;

std::u16string Line(const std::u16string& message) {
    return Head + message + u"\r\n";
}

std::string Bytes(const std::u16string& text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

// What a parser says of some bytes: "line MESSAGE", "banner LINE|LINE", "bad OFFSET REASON".
class Heard final : public LogSink {
public:
    void OnLine(std::u16string_view text, const LogEntry& entry) override {
        EXPECT_TRUE(text.ends_with(entry.message));
        said.push_back("line " + Harbor::ToUtf8(entry.message));
    }
    void OnBanner(const std::vector<std::u16string>& lines) override {
        std::string all = "banner ";
        for (const auto& line : lines) all += Harbor::ToUtf8(line) + "|";
        said.push_back(all);
    }
    void OnBadInput(std::uint64_t offset, std::string_view reason) override {
        said.push_back("bad " + std::to_string(offset) + " " + std::string(reason));
    }

    std::vector<std::string> said;
};

std::vector<std::string> Read(const std::string& bytes, std::size_t pieceSize = std::string::npos) {
    Heard heard;
    LogParser parser(heard);
    for (std::size_t at = 0; at < bytes.size(); at += std::min(pieceSize, bytes.size())) {
        parser.Feed(std::string_view(bytes).substr(at, pieceSize));
    }
    parser.Finish();
    return heard.said;
}

TEST(LogLine, IsTakenApartAtItsBars) {
    const std::u16string text = Head + u"  Entering: a | b";
    const auto entry = ParseLogEntry(text).value();
    EXPECT_EQ(entry.time, u"2024-03-05 07:08:09.0120345");
    EXPECT_EQ(entry.severity, u"DBG");
    EXPECT_EQ(entry.process, 4660u);
    EXPECT_EQ(entry.thread, 86u);
    EXPECT_EQ(entry.source, u"ActionImpl");
    EXPECT_EQ(entry.line, 29u);
    EXPECT_EQ(entry.message, u"  Entering: a | b");
}

TEST(LogParser, GivesTheSameWhereverTheBytesAreDivided) {
    const std::string bytes = Bytes(Banner + Line(u"one") + Line(u"two\r\n  inside\nlast") + Line(u"") + Banner +
                                    Line(u"\u010A\u0A0A\u0D00 \U0001F600"));
    const auto expected = Read(bytes);
    EXPECT_THAT(expected,
                ElementsAre("banner *** Module: M|*** Command line: c|", "line one", "line two\r\n  inside\nlast",
                            "line ", "banner *** Module: M|*** Command line: c|", "line Ċਊഀ 😀"));
    for (const std::size_t size : {1u, 2u, 3u, 7u, 64u, 201u}) EXPECT_EQ(Read(bytes, size), expected) << size;
}

TEST(LogParser, FindsTheLineBehindOneThatWasCut) {
    const std::string cut = Bytes(Head + u"cut");
    const std::string whole = Bytes(Line(u"whole"));
    const std::string offset = std::to_string(cut.size());
    EXPECT_THAT(Read(cut + whole + whole),
                ElementsAre("bad " + offset + " the line before is cut here", "line cut", "line whole", "line whole"));
    const auto said = Read(cut + Bytes(Banner) + whole);
    EXPECT_THAT(said, ElementsAre("bad " + offset + " the line before is cut here", "line cut", StartsWith("banner"),
                                  "line whole"));
}

TEST(LogParser, TellsWhereTheInputIsNoLog) {
    const std::string line = Bytes(Line(u"x"));
    const std::string stray = Bytes(u"no line\r\nneither\r\n");
    const std::string strayText = std::to_string(stray.size()) + " bytes that belong to no line";
    EXPECT_THAT(Read(stray + line), ElementsAre("bad 0 " + strayText, "line x"));
    EXPECT_THAT(
        Read(Bytes(Banner) + stray + line),
        ElementsAre(StartsWith("banner"), "bad " + std::to_string(Bytes(Banner).size()) + " " + strayText, "line x"));
    EXPECT_THAT(Read(Bytes(Edge + u"*** Module: M\r\n") + line),
                ElementsAre("bad 0 the banner that begins here is cut", "banner *** Module: M|", "line x"));
    EXPECT_THAT(
        Read(line + line.substr(0, line.size() - 3)),
        ElementsAre("bad " + std::to_string(line.size()) + " the line that begins here is cut by the end of the input",
                    "bad " + std::to_string(2 * line.size() - 4) + " half a character", "line x", "line x"));
    EXPECT_THAT(
        Read(Bytes(Line(u"\xD83D"))),
        ElementsAre("bad " + std::to_string(2 * Head.size()) + " half of a surrogate pair", "line \xEF\xBF\xBD"));
    EXPECT_THAT(Read(std::string(1 << 20, 'x')), testing::SizeIs(2)) << "the end and the stray bytes, each once";
    EXPECT_THAT(Read(Bytes(u"\uFEFF" + Line(u"x"))), ElementsAre("line x"));
    EXPECT_THAT(Read(""), IsEmpty());
}

TEST(SlowestCalls, AreTheSlowestOfAllAndOfEqualOnesTheFirst) {
    SlowestCalls slowest(2);
    const auto add = [&](const std::u16string& message) {
        const std::u16string line = Head + message;
        slowest.Add(ParseLogEntry(line).value());
    };
    add(u"Exiting: A [0.300 ms]");
    add(u"Exiting: B [0.100 ms]");
    add(u"no trace");
    add(u"Exiting: C [0.300 ms]");
    add(u"Exiting: D [0.300 ms]");
    std::vector<std::string> names;
    for (const auto& [microseconds, call] : slowest.Get()) names.push_back(call.name);
    EXPECT_THAT(names, ElementsAre("A", "C"));
}

}  // namespace
