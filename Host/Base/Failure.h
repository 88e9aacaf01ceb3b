// How the program can end, and the bad input that ends it early. A call that failed is a Harbor::Failure.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace Host {

namespace ExitCode {
inline constexpr int Success = 0;
inline constexpr int Failure = 1;    // a call or the output failed, objects were left alive, or a schedule is refused
inline constexpr int BadInput = 2;   // on the command line or in a file
inline constexpr int NoTrigger = 3;  // of `compare`
}  // namespace ExitCode

// Input from the user that is not valid. The message has a line for each fault, in UTF-8.
class BadInput : public std::runtime_error {
public:
    using runtime_error::runtime_error;
};

// A text that does not have the form of its option. The message states the rule and the remedy; the caller that knows
// the option turns it into BadInput.
class BadForm : public std::runtime_error {
public:
    using runtime_error::runtime_error;
};

// Makes the message: SOURCE: "VALUE" is not valid: RULE.
[[nodiscard]] BadInput InvalidValue(std::string_view source, std::string_view value, const BadForm& form);
// Makes the usual message: SOURCE: "VALUE" is not valid; expected EXPECTED. `source` is an option, for instance.
[[nodiscard]] BadInput InvalidValue(std::string_view source, std::string_view value, std::string_view expected);

// Collects the faults of several inputs, so that the user sees all of them at once.
class Faults {
public:
    // Calls the body. If it throws BadInput, keeps the message.
    template <class Body>
    void Collect(Body&& body) {
        try {
            body();
        } catch (const BadInput& fault) {
            messages_.append(messages_.empty() ? "" : "\n").append(fault.what());
        }
    }
    // Throws BadInput with all messages if there are any.
    void ThrowIfAny() const {
        if (!messages_.empty()) throw BadInput(messages_);
    }

private:
    std::string messages_;
};

}  // namespace Host
