// The one place that settings are read through: the environment first, then the chain of INI files, then the caller's
// own default. Any thread may read; look-ups, with their file reads, go one after the other.
#pragma once

#include <vector>

#include "Common/Base/Guards.h"
#include "Common/Settings/SettingsSource.h"

namespace Harbor {

class SettingsStore {
public:
    static SettingsStore& Instance();

    // Sources aren't owned; the one that was added last is asked first.
    void AddSource(ISettingsSource& source);
    void RemoveSource(ISettingsSource& source);

    // The code of the first source that answers with a success or with E_ABORT, else 0x80070490.
    HRESULT GetString(const WideChar* section, const WideChar* key, WideString& value);
    HRESULT GetNumber(const WideChar* section, const WideChar* key, std::uint32_t& value);

    SettingsStore(const SettingsStore&) = delete;
    SettingsStore& operator=(const SettingsStore&) = delete;

private:
    template <class T>
    friend class SingletonHolder;
    SettingsStore();

    template <class Ask>
    HRESULT AskSources(Ask ask);

    CriticalSection lock_;
    std::vector<ISettingsSource*> sources_;  // guarded by lock_
};

// Whether a source removes itself from its store when it ends. The sources of this module stay: they end with the
// store.
enum class AtEnd { StayRegistered, Remove };

// A source that adds itself to a store.
template <class Source>
class RegisteredSource : public Source {
public:
    RegisteredSource(SettingsStore& store, AtEnd atEnd) : store_(store), atEnd_(atEnd) { store_.AddSource(*this); }
    RegisteredSource(const RegisteredSource&) = delete;
    RegisteredSource& operator=(const RegisteredSource&) = delete;
    ~RegisteredSource() override {
        if (atEnd_ == AtEnd::Remove) store_.RemoveSource(*this);
    }

private:
    SettingsStore& store_;
    const AtEnd atEnd_;
};

// Reading one setting. S_OK means that `value` is set.
HRESULT GetSetting(const WideChar* section, const WideChar* key, WideString& value);
HRESULT GetSettingNumber(const WideChar* section, const WideChar* key, std::uint32_t& value);
[[nodiscard]] bool HasSetting(const WideChar* section, const WideChar* key, WideString& value);
// The default on any failure.
[[nodiscard]] WideString GetSettingOr(const WideChar* section, const WideChar* key, const WideChar* defaultValue);
[[nodiscard]] std::uint32_t GetSettingNumberOr(const WideChar* section, const WideChar* key,
                                               std::uint32_t defaultValue);

}  // namespace Harbor
