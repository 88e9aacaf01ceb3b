// The bytes of a log: however they are divided, the parser reports the same lines, banners and errors, each error with
// a position within the input.
#include "Fuzzing.h"
#include "Host/Log/LogParser.h"

namespace {

class Heard final : public Host::LogSink {
public:
    explicit Heard(std::size_t size) : size_(size) {}

    void OnLine(std::u16string_view text, const Host::LogEntry& entry) override {
        REQUIRE(text.ends_with(entry.message) && Host::ParseLogEntry(text).has_value());
        said += "line " + Harbor::ToUtf8(text) + "\n";
    }
    void OnBanner(const std::vector<std::u16string>& lines) override {
        said += "banner\n";
        for (const std::u16string& line : lines) said += Harbor::ToUtf8(line) + "\n";
    }
    void OnBadInput(std::uint64_t offset, std::string_view reason) override {
        REQUIRE(offset < size_);
        said += "bad " + std::to_string(offset) + " " + std::string(reason) + "\n";
    }

    std::string said;

private:
    const std::size_t size_;
};

std::string Read(std::string_view bytes, std::size_t pieceSize) {
    Heard heard(bytes.size());
    Host::LogParser parser(heard);
    for (std::size_t at = 0; at < bytes.size(); at += pieceSize) parser.Feed(bytes.substr(at, pieceSize));
    parser.Finish();
    return heard.said;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = Fuzzing::AsBytes(data, size);
    // Unchanged, and widened to 16 bits, so that a mutation of one byte changes one character.
    const std::u16string text = Harbor::FromUtf8(bytes);
    const std::string_view wide(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
    for (const std::string_view log : {bytes, wide}) {
        if (log.empty()) continue;
        const std::string whole = Read(log, log.size());
        for (const std::size_t pieceSize : {1u, 7u}) REQUIRE(Read(log, pieceSize) == whole);
    }
    return 0;
}
