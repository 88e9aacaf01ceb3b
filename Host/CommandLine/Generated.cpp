#include "Host/CommandLine/Generated.h"

#include <sstream>

namespace Host {
namespace {

// A text as man(7) shows it: with hyphens that can be copied and quotes that do not group words, and without lines that
// begin like a request.
std::string Escaped(const std::string& text) {
    std::string escaped;
    bool isLineBegin = true;
    for (const char c : text) {
        if (isLineBegin && (c == '.' || c == '\'')) escaped += "\\&";
        switch (c) {
            case '-':
                escaped += "\\-";
                break;
            case '\\':
                escaped += "\\e";
                break;
            case '"':
                escaped += "\\(dq";
                break;
            default:
                escaped += c;
        }
        isLineBegin = c == '\n';
    }
    return escaped;
}

std::vector<const CLI::Option*> ShownOptions(const CLI::App& app) {
    return app.get_options([](const CLI::Option* option) { return !option->get_group().empty(); });
}

std::vector<const CLI::App*> Commands(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App*) { return true; });
}

void WriteOptions(std::ostream& out, const CLI::App& app) {
    for (const CLI::Option* const option : ShownOptions(app)) {
        const std::string name = option->get_positional() ? option->get_name(true) : option->get_name(false, true);
        const bool hasValue = !option->get_positional() && option->get_items_expected_max() > 0;
        out << ".TP\n.B " << Escaped(name) << (hasValue ? " " + Escaped(option->get_type_name()) : "") << '\n'
            << Escaped(option->get_description()) << '\n';
    }
}

// The long options of an app, separated by spaces.
std::string OptionWords(const CLI::App& app) {
    std::string words;
    for (const CLI::Option* const option : ShownOptions(app)) {
        for (const std::string& name : option->get_lnames()) words += (words.empty() ? "--" : " --") + name;
    }
    return words;
}

}  // namespace

std::string ManualPage(const CLI::App& app, const std::string& version) {
    std::ostringstream out;
    out << ".TH ACTIONHOST 1 \"\" \"OrvActionManager " << version << "\" \"User commands\"\n"
        << ".SH NAME\nActionHost \\- run the module OrvActionManager, preview schedules, show its log\n"
        << ".SH SYNOPSIS\n.B ActionHost\n.RI [ options ]\n.br\n.B ActionHost\n.I command\n.RI [ arguments ]\n"
        << ".SH DESCRIPTION\n"
        << Escaped(app.get_description()) << "\n.SH OPTIONS\n";
    WriteOptions(out, app);
    out << ".SH COMMANDS\n";
    for (const CLI::App* const command : Commands(app)) {
        out << ".SS " << Escaped(command->get_name()) << '\n' << Escaped(command->get_description()) << '\n';
        WriteOptions(out, *command);
    }
    out << ".SH NOTES\n.nf" << Escaped(app.get_footer()) << "\n.fi\n";
    return out.str();
}

std::string BashCompletion(const CLI::App& app) {
    std::string commands;
    std::ostringstream cases;
    for (const CLI::App* const command : Commands(app)) {
        commands += (commands.empty() ? "" : " ") + command->get_name();
        cases << "        " << command->get_name() << ") words='" << OptionWords(*command) << "' ;;\n";
    }
    std::ostringstream out;
    out << "# Completes the options and commands of ActionHost, and names of files elsewhere.\n"
        << "_ActionHost() {\n"
        << "    local word=${COMP_WORDS[COMP_CWORD]} words='" << OptionWords(app) << " " << commands << "'\n"
        << "    case ${COMP_WORDS[1]} in\n"
        << cases.str() << "    esac\n"
        << "    COMPREPLY=()\n"
        << "    if [[ $word == -* || $COMP_CWORD == 1 ]]; then COMPREPLY=($(compgen -W \"$words\" -- \"$word\")); fi\n"
        << "}\n"
        << "complete -o default -F _ActionHost ActionHost\n";
    return out.str();
}

}  // namespace Host
