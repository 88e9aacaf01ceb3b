// All settings are read through this store: from the environment, then from the INI files. The default of a setting
// belongs to its reader. Any thread may read; look-ups, with their reads of files, are serialised.
#pragma once

#include <memory>
#include <vector>

#include "Common/Base/Guards.h"
#include "Common/Settings/SettingsSource.h"

namespace Harbor {

class SettingsStore {
public:
    // The store of this module.
    static SettingsStore& Instance();
    // A store with the sources that the store of another module of this process has. The module is used only during
    // the call.
    explicit SettingsStore(Platform::HMODULE module);

    // A source is not owned: it must live until it is removed. The source that was added last is asked first. AddSource
    // throws HRX with E_OUTOFMEMORY if memory runs out.
    void AddSource(ISettingsSource& source);
    void RemoveSource(ISettingsSource& source);

    // Return the code of the first source that returns a success or E_ABORT, or NOT_FOUND if there is none. `value` is
    // set only by a success.
    HRESULT GetString(const WideChar* section, const WideChar* key, WideString& value);
    HRESULT GetNumber(const WideChar* section, const WideChar* key, std::uint32_t& value);
    // Return the same, and name the variable or file that holds the value.
    HRESULT FindString(const WideChar* section, const WideChar* key, WideString& value, WideString& place);
    HRESULT FindNumber(const WideChar* section, const WideChar* key, std::uint32_t& value, WideString& place);

    SettingsStore(const SettingsStore&) = delete;
    SettingsStore& operator=(const SettingsStore&) = delete;

private:
    template <class T>
    friend class SingletonHolder;
    SettingsStore();

    template <class Ask>
    HRESULT AskSources(Ask ask);

    CriticalSection lock_;
    std::vector<ISettingsSource*> sources_;                // guarded by lock_
    std::vector<std::unique_ptr<ISettingsSource>> owned_;  // the sources of a store for another module
};

// Whether a source removes itself from its store when it ends. The sources of this module stay: they outlive the store.
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

// Read one setting from the store. GetSetting and GetSettingNumber return its code; HasSetting returns whether it is a
// success.
HRESULT GetSetting(const WideChar* section, const WideChar* key, WideString& value);
HRESULT GetSettingNumber(const WideChar* section, const WideChar* key, std::uint32_t& value);
[[nodiscard]] bool HasSetting(const WideChar* section, const WideChar* key, WideString& value);
// Return the value, or the default on any failure.
[[nodiscard]] WideString GetSettingOr(const WideChar* section, const WideChar* key, const WideChar* defaultValue);
[[nodiscard]] std::uint32_t GetSettingNumberOr(const WideChar* section, const WideChar* key,
                                               std::uint32_t defaultValue);

}  // namespace Harbor
