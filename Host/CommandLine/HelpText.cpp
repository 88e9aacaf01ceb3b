#include "Host/CommandLine/HelpText.h"

#include <algorithm>
#include <numeric>
#include <sstream>
#include <utility>
#include <vector>

namespace Host {
namespace {

constexpr std::size_t DescriptionWidth = 70;  // the names take the other 30 columns
constexpr std::size_t MostDifferences = 2;    // between an option and its misspelling

// The number of characters to insert, remove or replace to make one text of the other (Levenshtein).
std::size_t Differences(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string InLines(const std::string& description) {
    std::istringstream words(description);
    std::string text, word;
    for (std::size_t column = 0; words >> word; column += word.size()) {
        if (column != 0) {
            const bool fits = column + 1 + word.size() <= DescriptionWidth;
            text += fits ? ' ' : '\n';
            column = fits ? column + 1 : 0;
        }
        text += word;
    }
    return text;
}

std::optional<std::string> SimilarOption(const CLI::App& app, const std::string& argument) {
    if (!argument.starts_with("--")) return std::nullopt;
    const auto commands = app.get_subcommands();
    const CLI::App& used = commands.empty() ? app : *commands.front();
    std::optional<std::string> similar;
    std::size_t fewest = MostDifferences + 1;
    for (const CLI::Option* const option : used.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            const std::size_t differences = Differences(argument, "--" + name);
            if (differences < fewest) similar = "--" + name;
            fewest = std::min(fewest, differences);
        }
    }
    return similar;
}

}  // namespace Host
