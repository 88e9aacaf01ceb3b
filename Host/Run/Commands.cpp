#include "Host/Run/Commands.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <optional>
#include <span>
#include <sstream>

#include "Common/Base/Text.h"
#include "Host/Base/Failure.h"
#include "Host/Run/CommandPoint.h"
#include "Host/Schedules/Duration.h"

namespace Host {
namespace {

using Words = std::vector<std::string>;

// Nothing if a quote is not closed.
std::optional<Words> SplitWords(std::string_view line) {
    constexpr char quote = '"';
    if (std::ranges::count(line, quote) % 2 != 0) return std::nullopt;
    Words words;
    std::istringstream in{std::string(line)};
    // No escape character: a backslash separates the elements of a path.
    for (std::string word; in >> std::quoted(word, quote, '\0');) words.push_back(word);
    return words;
}

Command PointCommand(const Words& words, const Harbor::WideChar* command) {
    return WriteCommand{CommandPointPath(Harbor::FromUtf8(words[1]), Harbor::FromUtf8(words[2])),
                        {{u"Command", command}}};
}

std::optional<Command> MakeStart(const Words& words) {
    return PointCommand(words, u"Start");
}
std::optional<Command> MakeStop(const Words& words) {
    return PointCommand(words, u"Stop");
}

std::optional<Command> MakeWrite(const Words& words) {
    WriteCommand command{Harbor::FromUtf8(words[1]), {}};
    for (auto word = words.begin() + 2; word != words.end(); ++word) {
        const std::size_t equals = word->find('=');
        if (equals == 0 || equals == word->npos) return std::nullopt;
        command.attributes.push_back(
            {Harbor::FromUtf8(word->substr(0, equals)), Harbor::FromUtf8(word->substr(equals + 1))});
    }
    return command;
}

std::optional<Command> MakeTree(const Words& words) {
    return TreeCommand{words.size() > 1 ? words[1] : std::string()};
}

template <class T>
std::optional<Command> Make(const Words&) {
    return T{};
}

constexpr std::size_t AnyNumber = std::size_t(-1);

struct CommandForm {
    std::string_view word;
    std::string_view form;
    std::string_view meaning;
    std::size_t fewestWords;
    std::size_t mostWords;
    std::optional<Command> (*make)(const Words&);
};

constexpr std::array Forms{
    CommandForm{"start", "start PARENT LEAF", "write the command Start to a command point", 3, 3, &MakeStart},
    CommandForm{"stop", "stop PARENT LEAF", "write the command Stop to a command point", 3, 3, &MakeStop},
    CommandForm{"write", "write PATH NAME=VALUE...", "write text attributes to a node, such as \\A\\B", 3, AnyNumber,
                &MakeWrite},
    CommandForm{"alive", "alive", "count live objects; the module lists them in its log", 1, 1, &Make<AliveCommand>},
    CommandForm{"status", "status", "show calls, next due times and lateness", 1, 1, &Make<StatusCommand>},
    CommandForm{"tree", "tree [FILE]", "print the configuration tree, or write it to a file", 1, 2, &MakeTree},
    CommandForm{"help", "help", "show this list", 1, 1, &Make<HelpCommand>},
    CommandForm{"quit", "quit", "stop the host", 1, 1, &Make<QuitCommand>},
};

// "start, stop or quit"
std::string CommandWords() {
    std::string words(Forms.front().word);
    for (const CommandForm& form : std::span(Forms).subspan(1)) {
        words.append(&form == &Forms.back() ? " or " : ", ").append(form.word);
    }
    return words;
}

}  // namespace

Command ParseCommand(std::string_view line, std::string_view source) {
    const auto words = SplitWords(line);
    if (!words) throw InvalidValue(source, line, "a closing quote for each opening one");
    const auto form = std::ranges::find(Forms, words->empty() ? "" : words->front(), &CommandForm::word);
    if (form == Forms.end()) throw InvalidValue(source, line, CommandWords());
    const bool fits = words->size() >= form->fewestWords && words->size() <= form->mostWords;
    const auto command = fits ? form->make(*words) : std::nullopt;
    if (!command) throw InvalidValue(source, line, form->form);
    return *command;
}

std::string CommandHelp() {
    std::ostringstream help;
    for (const CommandForm& form : Forms)
        help << "  " << std::left << std::setw(26) << form.form << form.meaning << '\n';
    return help.str();
}

TimedCommand ParseTimedCommand(std::string_view text, std::string_view source) {
    const std::size_t space = std::min(text.find(' '), text.size());
    const std::string_view delay = text.substr(0, space);
    try {
        return {ParseDuration(delay).Length(), ParseCommand(text.substr(space), source)};
    } catch (const BadForm& form) {
        throw InvalidValue(source, delay, form);
    }
}

}  // namespace Host
