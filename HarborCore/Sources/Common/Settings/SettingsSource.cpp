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

std::vector<WideString> IniFiles() {
    const Platform::HMODULE own = OwnModule();
    const WideString exeDirectory = ModuleDirectory(nullptr);
    std::vector<WideString> files{exeDirectory + ModuleName(nullptr, Extension::Strip) + u".ini"};
    const bool isMain = IsMainModule(own);
    if (!isMain) files.push_back(exeDirectory + ModuleName(own, Extension::Strip) + u".ini");
    files.push_back(exeDirectory + GlobalIniName);
    if (const WideString directory = ModuleDirectory(own); !isMain && directory != exeDirectory) {
        files.push_back(directory + ModuleName(own, Extension::Strip) + u".ini");
        files.push_back(directory + GlobalIniName);
    }
    return files;
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
    const WideString name = WideString(u"GS_") + SectionName(section) + u"_" + key;
    WideString text;
    if (const HRESULT code = ReadEnvironmentVariable(name.c_str(), text); Failed(code)) return code;
    value = Trim(text);
    return S_OK;
}

IniSettingsSource::IniSettingsSource() : files_(IniFiles()) {}

HRESULT IniSettingsSource::GetString(const WideChar* section, const WideChar* key, WideString& value) {
    section = SectionName(section);
    WideString globalFile;
    HRESULT code = ReadEnvironmentVariable(GlobalIniVariable, globalFile);
    if (Succeeded(code)) code = ReadIniKey(section, key, globalFile, value);
    bool isAnyUnreadable = code == E_ABORT;
    for (auto file = files_.begin(); Failed(code) && file != files_.end(); ++file) {
        code = ReadIniKey(section, key, *file, value);
        isAnyUnreadable = isAnyUnreadable || code == E_ABORT;
    }
    return Failed(code) && isAnyUnreadable ? E_ABORT : code;
}

}  // namespace Harbor
