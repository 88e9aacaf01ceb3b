// The sources that settings come from.
#pragma once

#include <vector>

#include "Harbor/ResultCodes.h"

namespace Harbor {

// The section that a null section name means.
inline constexpr WideChar GeneralSection[] = u"General";

// Gives S_OK and a value, or a failure: 0x80070490 if it doesn't have the setting, E_ABORT if that can't be told now,
// for lack of memory or descriptors or because a file can't be read to its end. A null section means "General".
class ISettingsSource {
public:
    virtual ~ISettingsSource() = default;
    virtual HRESULT GetString(const WideChar* section, const WideChar* key, WideString& value) = 0;
    virtual HRESULT GetNumber(const WideChar* section, const WideChar* key, std::uint32_t& value) = 0;
};

// Numbers on top of texts, once for all sources.
class SettingsSource : public ISettingsSource {
public:
    // The whole text must be a number, as wcstoul reads one at base 0; E_INVALIDARG otherwise.
    HRESULT GetNumber(const WideChar* section, const WideChar* key, std::uint32_t& value) override;
};

// The environment variables GS_<section>_<key>. An empty variable is a setting with an empty value.
class EnvironmentSettingsSource : public SettingsSource {
public:
    HRESULT GetString(const WideChar* section, const WideChar* key, WideString& value) override;
};

// The INI file that the environment variable GLOBAL_SETTINGS_INI names at the moment of the look-up, then the files
// beside the process and beside this module. A key with an empty value counts as missing.
class IniSettingsSource : public SettingsSource {
public:
    IniSettingsSource();

    HRESULT GetString(const WideChar* section, const WideChar* key, WideString& value) override;

private:
    const std::vector<WideString> files_;
};

}  // namespace Harbor
