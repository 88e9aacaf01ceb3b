// How the program can end, and the failures that end it early.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "Harbor/ResultCodes.h"

namespace Host {

namespace ExitCode {
inline constexpr int Success = 0;
inline constexpr int Failure = 1;    // a call failed, or something was left alive
inline constexpr int BadInput = 2;   // on the command line or in a file
inline constexpr int NoTrigger = 3;  // of `compare`
}  // namespace ExitCode

// One line for the user, in UTF-8.
class BadInput : public std::runtime_error {
public:
    using runtime_error::runtime_error;
};

// "OPTION: "VALUE" is wrong; give WHAT WOULD BE RIGHT"
[[noreturn]] void Refuse(std::string_view option, std::string_view value, std::string_view right);

class CallFailure : public std::runtime_error {
public:
    using runtime_error::runtime_error;
};

// Throws CallFailure with `what`, the code and its text, if the code is a failure.
void Check(Harbor::HRESULT code, std::string_view what);
// The same for a function of the platform layer, which leaves its reason as the thread's last error.
void CheckPlatform(bool result, std::string_view what);

}  // namespace Host
