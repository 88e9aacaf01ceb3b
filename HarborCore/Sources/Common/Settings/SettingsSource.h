// The sources of settings: the environment and INI files.
#pragma once

#include <vector>

#include "Harbor/ResultCodes.h"
#include "Platform/Modules.h"

namespace Harbor {

// The section that is meant by a null section name.
inline constexpr WideChar GeneralSection[] = u"General";

// A source. Both functions store the value and return S_OK, or return a failure: NOT_FOUND if the source does not have
// the setting, E_ABORT if that cannot be determined now, because memory or descriptors run out, another process holds
// the file, or it cannot be read to its end. A null section means "General".
class ISettingsSource {
public:
    virtual ~ISettingsSource() = default;
    virtual HRESULT GetString(const WideChar* section, const WideChar* key, WideString& value) = 0;
    virtual HRESULT GetNumber(const WideChar* section, const WideChar* key, std::uint32_t& value) = 0;
    // Names the variable or the file that holds a setting of this source, for people. Empty if that is not known.
    virtual WideString PlaceOf(const WideChar*, const WideChar*) { return {}; }
};

// Reads a number from the text of a setting, for all sources.
class SettingsSource : public ISettingsSource {
public:
    // The whole text must be a number as wcstoul reads it with base 0. Returns E_INVALIDARG otherwise.
    HRESULT GetNumber(const WideChar* section, const WideChar* key, std::uint32_t& value) override;
};

// The environment variables GS_<section>_<key>. An empty variable is a setting with an empty value.
class EnvironmentSettingsSource : public SettingsSource {
public:
    HRESULT GetString(const WideChar* section, const WideChar* key, WideString& value) override;
    WideString PlaceOf(const WideChar* section, const WideChar* key) override;
};

// INI files: first the file that the environment variable GLOBAL_SETTINGS_INI names at the time of the look-up, then
// the files in the directories of the process and of the module. A key with an empty value is a missing key. A file
// that cannot be read now does not end the search: the result is E_ABORT only if no other file has the key.
class IniSettingsSource : public SettingsSource {
public:
    // For this module.
    IniSettingsSource();
    // For another module of this process, which is used only during the call.
    explicit IniSettingsSource(Platform::HMODULE module);

    HRESULT GetString(const WideChar* section, const WideChar* key, WideString& value) override;
    WideString PlaceOf(const WideChar* section, const WideChar* key) override;

private:
    HRESULT Find(const WideChar* section, const WideChar* key, WideString& value, WideString& file) const;

    const std::vector<WideString> files_;
};

}  // namespace Harbor
