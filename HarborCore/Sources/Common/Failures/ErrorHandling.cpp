#include "Common/Failures/ErrorHandling.h"

#include <array>
#include <optional>

#include "Common/Base/HRes.h"
#include "Common/Base/OwnedHandle.h"
#include "Common/Base/SingletonHolder.h"
#include "Common/Base/Text.h"
#include "Common/Failures/ErrorTextCache.h"
#include "Common/Logging/Log.h"
#include "Common/Settings/ModuleInfo.h"
#include "Common/Settings/SettingsStore.h"
#include "Harbor/ErrorText.h"
#include "Platform/Errors.h"
#include "Platform/Modules.h"

namespace Harbor {
namespace {

constexpr WideChar Section[] = u"ErrorHandling";
constexpr WideChar MessageFileKey[] = u"MessageFile";
constexpr WideChar MessageFileDefault[] = u"SharedFaultTexts.dll";
constexpr WideChar FallbackMessageFileKey[] = u"FallbackMessageFile";
constexpr std::u16string_view ListSeparators = u",|;";
constexpr std::u16string_view TextEnd = u" .\r\n";
constexpr WideChar NoDescription[] = u"<no description>";

// The range of the codes that each interface defines for itself: facility 4, from 0x200 on.
constexpr std::uint32_t FirstInterfaceCode = 0x80040200;
constexpr std::uint32_t EndOfInterfaceCodes = 0x80050000;
constexpr std::uint32_t FacilityWin32 = 7;

using ModuleHandle = OwnedHandle<Platform::HMODULE, &Platform::FreeLibrary>;

std::optional<WideString> AskSystem(std::uint32_t code) {
    return FindMessage(Platform::FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code);
}

// True on a thread that is loading message modules. Codes that it describes during that time, such as that of a failed
// load, are described only by the system, since the lists of modules do not exist yet.
thread_local bool LoadingModules = false;

class LoadingModulesScope {
public:
    LoadingModulesScope() noexcept { LoadingModules = true; }
    LoadingModulesScope(const LoadingModulesScope&) = delete;
    LoadingModulesScope& operator=(const LoadingModulesScope&) = delete;
    ~LoadingModulesScope() { LoadingModules = false; }
};

// The files that contain the texts of codes. They are loaded when the first code needs them.
class ErrorMessageModules {
public:
    using List = std::array<ModuleHandle, 5>;  // filled from the front; an empty handle ends it

    static ErrorMessageModules& Instance();

    static std::optional<WideString> Ask(const List& modules, std::uint32_t code) {
        for (auto module = modules.begin(); module != modules.end() && *module; ++module) {
            if (auto text = FindMessage(Platform::FORMAT_MESSAGE_FROM_HMODULE, module->get(), code)) return text;
        }
        return std::nullopt;
    }

    const List& MessageModules() const noexcept { return messageModules_; }
    const List& FallbackMessageModules() const noexcept { return fallbackMessageModules_; }

    ErrorMessageModules(const ErrorMessageModules&) = delete;
    ErrorMessageModules& operator=(const ErrorMessageModules&) = delete;

private:
    template <class T>
    friend class Harbor::SingletonHolder;

    // Where a file is searched if its name has no directory.
    enum class BareNames { BesideThisModule, BySystemSearch };

    ErrorMessageModules() {
        const LoadingModulesScope loading;
        try {
            ThrowIfOutOfMemory([this] {
                Load(messageModules_, GetSettingOr(Section, MessageFileKey, MessageFileDefault),
                     BareNames::BesideThisModule);
                Load(fallbackMessageModules_, GetSettingOr(Section, FallbackMessageFileKey, u""),
                     BareNames::BySystemSearch);
            });
        } catch (const HRX& failure) {
            TRY_LOG(Err, u"Loading error message module(s)" << u" failed: " << failure.Code());
        }
    }

    // A line that cannot be logged is lost, so that the remaining modules are still loaded.
    static void Load(List& list, const WideString& names, BareNames bareNames) {
        std::size_t count = 0;
        for (const std::u16string_view item : Split(names, ListSeparators)) {
            WideString name(item);
            const bool isBare = name.find_first_of(u"\\/") == name.npos;
            if (isBare && bareNames == BareNames::BesideThisModule) name.insert(0, ModuleDirectory(OwnModule()));
            ModuleHandle module(Platform::LoadLibraryExW(
                name.c_str(), nullptr, Platform::LOAD_LIBRARY_AS_DATAFILE | Platform::LOAD_LIBRARY_AS_IMAGE_RESOURCE));
            if (!module) {
                const HRES failure = HRES::FromWin32Unchecked(Platform::GetLastError());
                TRY_LOG(Err, u"Loading errormsg module '" << name << u"'" << u" failed: " << failure);
            } else if (count < list.size()) {
                list[count++] = std::move(module);
            } else {
                TRY_LOG(Err, u"Loading errormsg module '" << name << u"'" << u" failed: " << u"No more slots");
            }
        }
    }

    List messageModules_{};
    List fallbackMessageModules_{};
};

constinit SingletonHolder<ErrorMessageModules> ModulesHolder;

ErrorMessageModules& ErrorMessageModules::Instance() {
    return ModulesHolder.Get();
}

std::optional<WideString> AskMessageModules(std::uint32_t code) {
    if (LoadingModules || code < FirstInterfaceCode || code >= EndOfInterfaceCodes) return std::nullopt;
    return ErrorMessageModules::Ask(ErrorMessageModules::Instance().MessageModules(), code);
}

std::optional<WideString> AskFallbackModules(std::uint32_t code) {
    if (LoadingModules) return std::nullopt;
    return ErrorMessageModules::Ask(ErrorMessageModules::Instance().FallbackMessageModules(), code);
}

std::optional<WideString> AskSystemOrFallback(std::uint32_t code) {
    auto text = AskSystem(code);
    return text ? text : AskFallbackModules(code);
}

std::optional<WideString> AskAllSources(std::uint32_t code) {
    auto text = AskMessageModules(code);
    if (!text) text = AskSystemOrFallback(code);
    const bool isWin32 = ((code >> 16) & 0x1FFF) == FacilityWin32;
    if (!text && isWin32) text = AskSystemOrFallback(code & 0xFFFF);
    return text;
}

}  // namespace

WideString DescribeError(std::uint32_t code) {
    ErrorTextCache& cache = ErrorTextCache::Instance();
    WideString text;
    if (cache.Lookup(code, text)) return text;
    const auto found = AskAllSources(code);
    text = found ? WideString(TrimEnd(*found, TextEnd)) : WideString(NoDescription);
    // A text that was found without the modules must not be kept: the modules may have a better one.
    if (!LoadingModules) cache.Store(code, text);
    return text;
}

}  // namespace Harbor
