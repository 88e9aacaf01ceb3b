#include "Host/CommandLine/ConfigFile.h"

#include "Host/Base/UserFile.h"

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

// `place` is the file and the number of the line.
GivenValue ReadLine(const std::string& line, const std::string& place, const CLI::App& options,
                    const GivenValues& before) {
    const std::size_t equals = line.find('=');
    const std::string name = Trimmed(line.substr(0, equals));
    const CLI::Option* option = options.get_option_no_throw("--" + name);
    const bool known = option != nullptr && option->get_configurable();
    if (equals == line.npos || !known) {
        throw InvalidValue(place, line, "NAME = VALUE, where NAME is a long option of the host");
    }
    GivenValue value{name, Unquoted(Trimmed(line.substr(equals + 1))), place + ": " + name, std::nullopt};
    if (value.text.empty()) throw BadInput(value.source + ": the value is empty");
    const bool isRepeatable = option->get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    if (!isRepeatable && before.Find(name) != nullptr)
        throw BadInput(value.source + ": a line above has a value for it");
    return value;
}

}  // namespace

GivenValues ReadConfigFile(const std::string& path, const CLI::App& options, Faults& faults) {
    std::ifstream file = OpenInputFile("--config", path);
    GivenValues values;
    std::size_t number = 0;
    for (std::string line; std::getline(file, line);) {
        if (++number == 1 && line.starts_with(ByteOrderMark)) line.erase(0, ByteOrderMark.size());
        line = Trimmed(line);
        if (IsEmptyOrComment(line)) continue;
        faults.Collect([&] { values.Add(ReadLine(line, path + ":" + std::to_string(number), options, values)); });
    }
    return values;
}

}  // namespace Host
