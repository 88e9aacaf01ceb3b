// A command line with one argument on each line, then an empty line and a configuration file. It is accepted or
// rejected, and an accepted one requests something.
#include <vector>

#include "Fuzzing.h"
#include "Host/Base/Failure.h"
#include "Host/CommandLine/Options.h"

namespace {

void Require(const Host::RunOptions& run) {
    REQUIRE(!run.schedules.empty() || !run.watches.empty());
    for (const auto& schedule : run.schedules) REQUIRE(!schedule.label.empty());
    for (const auto& watch : run.watches) {
        REQUIRE(!watch.label.empty() && !watch.value.LeafName.empty() && !watch.value.ParentName.empty());
    }
}
void Require(const Host::CheckOptions& check) {
    REQUIRE(!check.file.empty());
    Require(check.run);
}
void Require(const Host::SettingsOptions& settings) {
    REQUIRE(!settings.modulePath.empty());
}
void Require(const Host::CompareOptions& compare) {
    REQUIRE(!compare.modulePath.empty());
}
void Require(const Host::LogOptions& log) {
    REQUIRE(!log.follow || (log.file != "-" && !log.slowestCalls));
}
void Require(const Host::NextOptions& next) {
    REQUIRE(!next.schedules.empty());
}
void Require(const Host::ExplainOptions& explain) {
    REQUIRE(!explain.schedules.empty());
}
void Require(const Host::ShowText& show) {
    REQUIRE(show.text.ends_with('\n'));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string input(Fuzzing::AsBytes(data, size));
    std::ranges::replace(input, '\0', ' ');
    const std::size_t blank = input.find("\n\n");
    const Fuzzing::MemoryFile file(blank == input.npos ? "" : std::string_view(input).substr(blank + 2));
    std::vector<std::string> words{"ActionHost"};
    for (std::string_view rest = std::string_view(input).substr(0, blank); !rest.empty();) {
        words.emplace_back(rest.substr(0, rest.find('\n')));
        rest.remove_prefix(std::min(words.back().size() + 1, rest.size()));
    }
    if (blank != input.npos) words.push_back("--config=" + file.Path());

    std::vector<const char*> arguments;
    for (const std::string& word : words) arguments.push_back(word.c_str());
    try {
        std::visit([](const auto& options) { Require(options); },
                   Host::ParseOptions(static_cast<int>(arguments.size()), arguments.data()));
    } catch (const Host::BadInput& refusal) {
        REQUIRE(*refusal.what() != '\0');
    }
    return 0;
}
