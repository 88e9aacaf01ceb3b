// A command line with one argument on each line, then an empty line and a configuration file. It is accepted or
// rejected, and an accepted one requests something.
#include <vector>

#include "Fuzzing.h"
#include "Host/Base/Failure.h"
#include "Host/CommandLine/Options.h"

namespace {

template <class Settings>
void CheckLabels(const std::vector<Host::Labelled<Settings>>& items, std::initializer_list<std::string_view> options) {
    for (const auto& item : items) {
        REQUIRE(std::any_of(options.begin(), options.end(),
                            [&](std::string_view option) { return item.label.starts_with(option); }));
    }
}

void CheckOptions(const Host::RunOptions& run) {
    REQUIRE(!run.modulePath.empty() && (!run.schedules.empty() || !run.watches.empty()));
    CheckLabels(run.schedules, {"every ", "at "});
    CheckLabels(run.watches, {"watch "});
    for (const auto& watch : run.watches) REQUIRE(!watch.value.LeafName.empty() && !watch.value.ParentName.empty());
}
void CheckOptions(const Host::CompareOptions& compare) {
    REQUIRE(!compare.modulePath.empty());
}
void CheckOptions(const Host::LogOptions& log) {
    REQUIRE(!log.follow || (log.file != "-" && !log.slowestCalls));
}
void CheckOptions(const Host::NextOptions& next) {
    REQUIRE(!next.schedules.empty());
}
void CheckOptions(const Host::ExplainOptions& explain) {
    REQUIRE(!explain.schedules.empty());
}
void CheckOptions(const Host::ShowText& show) {
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
        std::visit([](const auto& options) { CheckOptions(options); },
                   Host::ParseOptions(static_cast<int>(arguments.size()), arguments.data()));
    } catch (const Host::BadInput& refusal) {
        REQUIRE(*refusal.what() != '\0');
    }
    return 0;
}
