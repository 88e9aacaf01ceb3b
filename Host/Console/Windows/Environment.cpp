#include "Host/Console/Environment.h"

#include <memory>

#include "Common/Base/Text.h"

#include "Host/Console/Windows/System.h"
// After windows.h, which its declarations need.
#include <shellapi.h>

namespace Host {
namespace {

const wchar_t* Native(const Harbor::WideString& text) noexcept {
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

std::string ToUtf8(const wchar_t* text) {
    return Harbor::ToUtf8(reinterpret_cast<const char16_t*>(text));
}

struct LocalMemory {
    void operator()(void* memory) const noexcept { ::LocalFree(memory); }
};

}  // namespace

std::optional<std::string> EnvironmentVariable(const char* name) {
    const Harbor::WideString wideName = Harbor::FromUtf8(name);
    std::wstring value(::GetEnvironmentVariableW(Native(wideName), nullptr, 0), L'\0');
    if (value.empty()) return std::nullopt;
    value.resize(::GetEnvironmentVariableW(Native(wideName), value.data(), static_cast<DWORD>(value.size())));
    return ToUtf8(value.c_str());
}

void SetVariableIfMissing(const char* name, const char* value) {
    if (EnvironmentVariable(name)) return;
    ::SetEnvironmentVariableW(Native(Harbor::FromUtf8(name)), Native(Harbor::FromUtf8(value)));
}

// The arguments of main are in the code page of the process, which does not have all characters.
std::vector<std::string> ProgramArguments(int /*argc*/, const char* const* /*argv*/) {
    int count = 0;
    const std::unique_ptr<wchar_t*, LocalMemory> words(::CommandLineToArgvW(::GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(ToUtf8(words.get()[i]));
    return arguments;
}

bool HasZoneDatabase() noexcept {
    return false;
}

bool SetLocalZone(const std::string& /*name*/) {
    return false;
}

}  // namespace Host
