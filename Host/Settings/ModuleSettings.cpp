#include "Host/Settings/ModuleSettings.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "Common/Base/Text.h"
#include "Common/Logging/LogSettings.h"
#include "Common/Settings/DataDirectory.h"
#include "Common/Settings/ModuleInfo.h"
#include "Common/Settings/SettingsStore.h"

namespace Host {

using namespace Harbor;

namespace {

// Says whether a text is a value of a setting, and what is expected.
struct Kind {
    bool (*accepts)(const WideString& text);
    std::string_view expected;
};

bool IsSeverity(const WideString& text) {
    return std::ranges::any_of(LogSeverityNames,
                               [&](std::u16string_view name) { return EqualsIgnoreCase(name, text); });
}

constexpr Kind Text{[](const WideString&) { return true; }, ""};
constexpr Kind Severity{&IsSeverity, "a severity"};
constexpr Kind Number{nullptr, "a number"};  // the sources themselves pass over texts that are none

struct Setting {
    const WideChar* section;
    const WideChar* key;
    Kind kind;
    std::u16string_view defaultText;
    std::uint32_t defaultNumber = 0;
};

// The readers of the settings keep their defaults to themselves, except those of the log.
constexpr std::array Settings{
    Setting{u"Logger", u"MaxSeverity", Severity, LogSeverityName(LogDefaults.maxSeverity)},
    Setting{u"Logger", u"Path", Text, LogDefaults.directory},
    Setting{u"Logger", u"LogFileSizeThresholdMB", Number, {}, LogDefaults.fileSizeThresholdMB},
    Setting{u"Logger", u"KeepOpenInterval", Number, {}, LogDefaults.keepOpenIntervalMs},
    Setting{u"Logger", u"HiddenNodeTypeAttrs", Text, u""},
    Setting{u"ErrorHandling", u"MessageFile", Text, u"SharedFaultTexts.dll"},
    Setting{u"ErrorHandling", u"FallbackMessageFile", Text, u""},
    Setting{u"General", u"DataDirectoryPath", Text, u""},
    Setting{u"General", u"DataDirectoryPathOverrideRegKey", Text, u""},
    Setting{u"Debug", u"EnableAliveObjectsTracking", Number, {}, 0},
    Setting{u"Debug", u"AliveObjectsTrackingFramesToSkip", Number, {}, 0},
};

std::string DefaultSource(const Kind& kind, const WideString& text, const WideString& place) {
    return "default, since \"" + ToUtf8(text) + "\" in " + ToUtf8(place) + " is not " + std::string(kind.expected);
}

ModuleSetting Ask(SettingsStore& store, const Setting& setting) {
    WideString text, place;
    const HRESULT code = store.FindString(setting.section, setting.key, text, place);
    ModuleSetting asked{ToUtf8(setting.section), ToUtf8(setting.key), {}, ToUtf8(place)};
    const bool isNumber = setting.kind.accepts == nullptr;
    std::uint32_t number = setting.defaultNumber;
    const bool isFound = isNumber ? Succeeded(store.FindNumber(setting.section, setting.key, number, place))
                                  : Succeeded(code) && setting.kind.accepts(text);
    if (isFound) {
        asked.value = isNumber ? std::to_string(number) : ToUtf8(text);
        asked.source = ToUtf8(place);
    } else {
        asked.value = isNumber ? std::to_string(number) : ToUtf8(setting.defaultText);
        asked.source = code == E_ABORT   ? "default, since a source cannot be read now"
                       : Succeeded(code) ? DefaultSource(setting.kind, text, place)
                                         : "default";
    }
    return asked;
}

}  // namespace

std::vector<ModuleSetting> SettingsOf(Platform::HMODULE module) {
    SettingsStore store(module);
    std::vector<ModuleSetting> asked;
    asked.reserve(Settings.size());
    for (const Setting& setting : Settings) asked.push_back(Ask(store, setting));
    return asked;
}

std::string LogFileOf(Platform::HMODULE module) {
    SettingsStore store(module);
    WideString path = LogDefaults.directory;
    (void)store.GetString(u"Logger", u"Path", path);
    const WideString directory = LogDirectory(DataDirectory(store, module).Resolve(path));
    std::string file = ToUtf8(directory + ModuleName(module, Extension::Strip) + u".log");
    // The framework takes both separators; the system may take only its own.
    std::ranges::replace(file, '\\', static_cast<char>(std::filesystem::path::preferred_separator));
    return file;
}

}  // namespace Host
