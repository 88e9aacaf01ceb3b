#include "Host/CommandLine/ConfigFile.h"

#include <algorithm>

#include "Host/Base/Failure.h"

namespace Host {
namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

std::string Trimmed(const std::string& text) {
    return CLI::detail::trim_copy(text);
}

std::string Unquoted(const std::string& text) {
    const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return quoted ? text.substr(1, text.size() - 2) : text;
}

bool IsEmptyOrComment(const std::string& line) {
    return line.empty() || line.front() == ';' || line.front() == '#';
}

// Collects the values of a name in one item: the library reads only the first item of a name.
void Add(std::vector<CLI::ConfigItem>& items, const std::string& name, std::string value) {
    auto item = std::ranges::find(items, name, &CLI::ConfigItem::name);
    if (item == items.end()) {
        items.emplace_back().name = name;
        item = items.end() - 1;
    }
    item->inputs.push_back(std::move(value));
}

}  // namespace

std::vector<CLI::ConfigItem> ConfigFile::from_config(std::istream& in) const {
    std::vector<CLI::ConfigItem> found;
    std::size_t number = 0;
    for (std::string line; std::getline(in, line);) {
        if (++number == 1 && line.starts_with(ByteOrderMark)) line.erase(0, ByteOrderMark.size());
        line = Trimmed(line);
        if (IsEmptyOrComment(line)) continue;
        const std::size_t equals = line.find('=');
        const std::string name = Trimmed(line.substr(0, equals));
        const CLI::Option* option = options_.get_option_no_throw("--" + name);
        const bool known = option != nullptr && option->get_configurable();
        if (equals == line.npos || !known) {
            throw InvalidValue("--config: line " + std::to_string(number), line,
                               "NAME = VALUE, where NAME is a long option of the host");
        }
        Add(found, name, Unquoted(Trimmed(line.substr(equals + 1))));
    }
    return found;
}

}  // namespace Host
