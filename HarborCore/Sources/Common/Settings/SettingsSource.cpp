#include "Common/Settings/SettingsSource.h"

#include "Common/Base/Text.h"
#include "Common/Settings/ModuleInfo.h"
#include "Platform/Environment.h"
#include "Platform/Errors.h"

namespace Harbor {
namespace {

constexpr WideChar GlobalIniVariable[] = u"GLOBAL_SETTINGS_INI";
constexpr WideChar GlobalIniName[] = u"GlobalSettings.ini";
constexpr std::size_t FirstBufferSize = 260;

const WideChar* SectionName(const WideChar* section) noexcept {
    return section == nullptr ? GeneralSection : section;
}

// Returns the code for a place that returned no value, from the last error. A place that cannot be read now must not be
// reported as one without the setting: a caller that keeps the answer (the rules of hidden attributes) would keep a
// wrong one. So only the reasons that last count as a missing setting.
HRESULT CodeOfMissingValue() noexcept {
    switch (Platform::GetLastError()) {
        case Platform::ERROR_SUCCESS:  // an empty value
        case Platform::ERROR_FILE_NOT_FOUND:
        case Platform::ERROR_PATH_NOT_FOUND:
        case Platform::ERROR_ACCESS_DENIED:
        case Platform::ERROR_INVALID_PARAMETER:
        case Platform::ERROR_ENVVAR_NOT_FOUND:
        case Platform::ERROR_FILENAME_EXCED_RANGE:
        case Platform::ERROR_CANT_RESOLVE_FILENAME:
            return NOT_FOUND;
        default:
            return E_ABORT;
    }
}

HRESULT ReadEnvironmentVariable(const WideChar* name, WideString& value) {
    Platform::DWORD size = Platform::GetEnvironmentVariableW(name, nullptr, 0);
    if (size == 0) return CodeOfMissingValue();
    // Another thread may change the variable between the query of its size and the read.
    Platform::DWORD length = size;
    while (length >= size) {
        size = length + 1;
        value.resize(size);
        Platform::SetLastError(Platform::ERROR_SUCCESS);
        length = Platform::GetEnvironmentVariableW(name, value.data(), size);
        if (length == 0 && Platform::GetLastError() != Platform::ERROR_SUCCESS) return CodeOfMissingValue();
    }
    value.resize(length);
    return S_OK;
}

HRESULT ReadIniKey(const WideChar* section, const WideChar* key, const WideString& file, WideString& value) {
    WideString buffer(FirstBufferSize, u'\0');
    for (;;) {
        const auto size = static_cast<Platform::DWORD>(buffer.size());
        Platform::SetLastError(Platform::ERROR_SUCCESS);
        const auto length = Platform::GetPrivateProfileStringW(section, key, u"", buffer.data(), size, file.c_str());
        if (length == 0) return CodeOfMissingValue();
        if (length < size - 1) {
            value = Trim({buffer.data(), length});
            return S_OK;
        }
        buffer.resize(buffer.size() * 2);
    }
}

std::vector<WideString> IniFiles(Platform::HMODULE module) {
    const WideString exeDirectory = ModuleDirectory(nullptr);
    std::vector<WideString> files{exeDirectory + ModuleName(nullptr, Extension::Strip) + u".ini"};
    const bool isMain = IsMainModule(module);
    if (!isMain) files.push_back(exeDirectory + ModuleName(module, Extension::Strip) + u".ini");
    files.push_back(exeDirectory + GlobalIniName);
    if (const WideString directory = ModuleDirectory(module); !isMain && directory != exeDirectory) {
        files.push_back(directory + ModuleName(module, Extension::Strip) + u".ini");
        files.push_back(directory + GlobalIniName);
    }
    return files;
}

WideString VariableName(const WideChar* section, const WideChar* key) {
    return WideString(u"GS_") + SectionName(section) + u"_" + key;
}

}  // namespace

HRESULT SettingsSource::GetNumber(const WideChar* section, const WideChar* key, std::uint32_t& value) {
    WideString text;
    if (const HRESULT code = GetString(section, key, text); Failed(code)) return code;
    const ParsedNumber number = ParseNumber(text);
    if (number.consumed == 0 || number.consumed != text.size()) return E_INVALIDARG;
    value = number.value;
    return S_OK;
}

HRESULT EnvironmentSettingsSource::GetString(const WideChar* section, const WideChar* key, WideString& value) {
    WideString text;
    if (const HRESULT code = ReadEnvironmentVariable(VariableName(section, key).c_str(), text); Failed(code))
        return code;
    value = Trim(text);
    return S_OK;
}

WideString EnvironmentSettingsSource::PlaceOf(const WideChar* section, const WideChar* key) {
    return VariableName(section, key);
}

IniSettingsSource::IniSettingsSource() : IniSettingsSource(OwnModule()) {}

IniSettingsSource::IniSettingsSource(Platform::HMODULE module) : files_(IniFiles(module)) {}

HRESULT IniSettingsSource::GetString(const WideChar* section, const WideChar* key, WideString& value) {
    WideString file;
    return Find(section, key, value, file);
}

WideString IniSettingsSource::PlaceOf(const WideChar* section, const WideChar* key) {
    WideString value, file;
    return Succeeded(Find(section, key, value, file)) ? file : WideString();
}

HRESULT IniSettingsSource::Find(const WideChar* section, const WideChar* key, WideString& value,
                                WideString& file) const {
    section = SectionName(section);
    HRESULT code = ReadEnvironmentVariable(GlobalIniVariable, file);
    if (Succeeded(code)) code = ReadIniKey(section, key, file, value);
    bool isAnyUnreadable = code == E_ABORT;
    for (auto next = files_.begin(); Failed(code) && next != files_.end(); ++next) {
        file = *next;
        code = ReadIniKey(section, key, file, value);
        isAnyUnreadable = isAnyUnreadable || code == E_ABORT;
    }
    return Failed(code) && isAnyUnreadable ? E_ABORT : code;
}

}  // namespace Harbor
