#include "Platform/Messages.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "ErrnoFailure.h"
#include "MessageModules.h"
#include "Platform/Errors.h"
#include "SystemMessages.h"

namespace Platform {

namespace {

constexpr std::uint16_t DefaultLanguage = 0x0409;

struct NamedLanguage {
    std::string_view locale;
    std::uint16_t id;
};

// A language without a country has the id of its published default country.
constexpr NamedLanguage NamedLanguages[] = {
    {"ar", 0x0401},    {"bg", 0x0402},    {"ca", 0x0403},    {"cs", 0x0405},    {"da", 0x0406},    {"de", 0x0407},
    {"de_AT", 0x0C07}, {"de_CH", 0x0807}, {"de_LI", 0x1407}, {"de_LU", 0x1007}, {"el", 0x0408},    {"en", 0x0409},
    {"en_AU", 0x0C09}, {"en_CA", 0x1009}, {"en_GB", 0x0809}, {"en_IE", 0x1809}, {"en_IN", 0x4009}, {"en_NZ", 0x1409},
    {"en_ZA", 0x1C09}, {"es", 0x0C0A},    {"es_MX", 0x080A}, {"et", 0x0425},    {"eu", 0x042D},    {"fi", 0x040B},
    {"fr", 0x040C},    {"fr_BE", 0x080C}, {"fr_CA", 0x0C0C}, {"fr_CH", 0x100C}, {"he", 0x040D},    {"hi", 0x0439},
    {"hr", 0x041A},    {"hu", 0x040E},    {"id", 0x0421},    {"is", 0x040F},    {"it", 0x0410},    {"it_CH", 0x0810},
    {"ja", 0x0411},    {"ko", 0x0412},    {"lt", 0x0427},    {"lv", 0x0426},    {"nb", 0x0414},    {"nl", 0x0413},
    {"nl_BE", 0x0813}, {"nn", 0x0814},    {"no", 0x0414},    {"pl", 0x0415},    {"pt", 0x0416},    {"pt_PT", 0x0816},
    {"ro", 0x0418},    {"ru", 0x0419},    {"sk", 0x041B},    {"sl", 0x0424},    {"sv", 0x041D},    {"sv_FI", 0x081D},
    {"th", 0x041E},    {"tr", 0x041F},    {"uk", 0x0422},    {"vi", 0x042A},    {"zh", 0x0804},    {"zh_HK", 0x0C04},
    {"zh_MO", 0x1404}, {"zh_SG", 0x1004}, {"zh_TW", 0x0404},
};

std::optional<std::uint16_t> FindLanguage(std::string_view locale) noexcept {
    const auto* const entry = std::find_if(std::begin(NamedLanguages), std::end(NamedLanguages),
                                           [locale](const NamedLanguage& named) { return named.locale == locale; });
    return entry != std::end(NamedLanguages) ? std::optional(entry->id) : std::nullopt;
}

std::string_view LocaleOfMessages() noexcept {
    for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(name);
        if (value != nullptr && *value != '\0') return value;
    }
    return {};
}

bool IsEnglish(DWORD language) noexcept {
    constexpr DWORD primaryLanguageMask = 0x3FF;
    return (language & primaryLanguageMask) == (DefaultLanguage & primaryLanguageMask);
}

std::optional<WideString> SystemText(DWORD code, DWORD language, DWORD& error) {
    if (language != 0 && !IsEnglish(language)) {
        error = ERROR_RESOURCE_LANG_NOT_FOUND;
        return std::nullopt;
    }
    const std::optional<std::u16string_view> text = Posix::SystemMessageText(code);
    if (!text) {
        error = ERROR_MR_MID_NOT_FOUND;
        return std::nullopt;
    }
    return WideString(*text) + u"\r\n";
}

// The size of the call is the least number of characters to allocate.
WideChar* AllocateCopy(const WideString& text, DWORD leastSize) noexcept {
    const std::size_t size = std::max<std::size_t>(text.size() + 1, leastSize);
    auto* const copy = static_cast<WideChar*>(std::calloc(size, sizeof(WideChar)));
    if (copy != nullptr) std::copy(text.begin(), text.end(), copy);
    return copy;
}

}  // namespace

std::uint16_t GetUserDefaultLangID() noexcept {
    std::string_view locale = LocaleOfMessages();
    locale = locale.substr(0, locale.find_first_of(".@"));
    if (const auto exact = FindLanguage(locale)) return *exact;
    return FindLanguage(locale.substr(0, locale.find('_'))).value_or(DefaultLanguage);
}

DWORD FormatMessageW(DWORD flags, const void* source, DWORD code, DWORD language, WideChar* buffer, DWORD size,
                     void* /*arguments*/) noexcept {
    constexpr DWORD required = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS;
    const bool fromSystem = flags == (required | FORMAT_MESSAGE_FROM_SYSTEM);
    const bool fromModule = flags == (required | FORMAT_MESSAGE_FROM_HMODULE);
    if ((!fromSystem && !fromModule) || buffer == nullptr) return Posix::Fail(ERROR_INVALID_PARAMETER, DWORD{0});

    WideChar*& result = *reinterpret_cast<WideChar**>(buffer);
    result = nullptr;
    return Posix::OrOutOfMemory(DWORD{0}, [&]() -> DWORD {
        DWORD error = ERROR_SUCCESS;
        const HMODULE module = static_cast<HMODULE>(const_cast<void*>(source));
        const std::optional<WideString> text =
            fromSystem ? SystemText(code, language, error) : Posix::MessageModuleText(module, code, language, error);
        if (!text) return Posix::Fail(error, DWORD{0});
        result = AllocateCopy(*text, size);
        if (result == nullptr) return Posix::Fail(ERROR_NOT_ENOUGH_MEMORY, DWORD{0});
        return static_cast<DWORD>(text->size());
    });
}

void* LocalFree(void* memory) noexcept {
    std::free(memory);
    return nullptr;
}

}  // namespace Platform
