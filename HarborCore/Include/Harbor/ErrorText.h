// The texts of result codes, and the description that a component leaves in the thread's error object.
#pragma once

#include <cstdio>
#include <optional>
#include <string>

#include "Harbor/OwnedHandle.h"
#include "Harbor/ResultCodes.h"
#include "Harbor/Text.h"
#include "Platform/ErrorObjects.h"
#include "Platform/Messages.h"

namespace Harbor {

// Returns the text of a code in the user's language, or in any language if there is none. `origin` is
// FORMAT_MESSAGE_FROM_SYSTEM, or FORMAT_MESSAGE_FROM_HMODULE for the message module `module`. The text ends as its
// source ends it, usually with ".\r\n". Returns nothing if the source does not know the code.
[[nodiscard]] inline std::optional<WideString> FindMessage(Platform::DWORD origin, Platform::HMODULE module,
                                                           std::uint32_t code) {
    for (const Platform::DWORD language : {Platform::DWORD{Platform::GetUserDefaultLangID()}, Platform::DWORD{0}}) {
        WideChar* buffer = nullptr;
        const Platform::DWORD length = Platform::FormatMessageW(
            Platform::FORMAT_MESSAGE_ALLOCATE_BUFFER | Platform::FORMAT_MESSAGE_IGNORE_INSERTS | origin, module, code,
            language, reinterpret_cast<WideChar*>(&buffer), 0, nullptr);
        const OwnedHandle<WideChar*, &Platform::LocalFree> text(buffer);
        if (length != 0 && text) return WideString(text.get(), length);
    }
    return std::nullopt;
}

// Returns the description of an error object. It is empty if the object has none or fails to return it.
[[nodiscard]] inline WideString DescriptionOf(Platform::IErrorInfo& errorInfo) {
    Platform::BSTR text = nullptr;
    const HRESULT code = errorInfo.GetDescription(&text);
    const OwnedHandle<Platform::BSTR, &Platform::SysFreeString> owner(text);
    return Failed(code) ? WideString() : WideString(text, Platform::SysStringLen(text));
}

// Returns a code and the system's text of it in UTF-8, such as "0x80070057 The parameter is incorrect". If the system
// does not know the code, returns only the number: the texts of the codes 0x80040200 to 0x8004FFFF are known to the
// component that returned the code.
[[nodiscard]] inline std::string ErrorText(HRESULT code) {
    const auto bits = static_cast<std::uint32_t>(code);
    char number[sizeof("0x80070057")];
    std::snprintf(number, sizeof(number), "0x%08X", bits);
    std::optional<WideString> words = FindMessage(Platform::FORMAT_MESSAGE_FROM_SYSTEM, nullptr, bits);
    const bool isWin32 = bits >> 16 == 0x8007;
    if (!words && isWin32) words = FindMessage(Platform::FORMAT_MESSAGE_FROM_SYSTEM, nullptr, bits & 0xFFFF);
    if (!words) return number;
    words->resize(words->find_last_not_of(u" .\r\n") + 1);
    return number + (' ' + ToUtf8(*words));
}

// Takes the object out of the thread's error object and returns the text of the failure: the description of the object,
// or ErrorText of the code if there is no object, if it has no description, or if it describes another code.
[[nodiscard]] inline std::string TakeErrorText(HRESULT code) {
    Platform::IErrorInfo* object = nullptr;
    if (Platform::GetErrorInfo(0, &object) != S_OK) return ErrorText(code);
    std::string description = ToUtf8(DescriptionOf(*object));
    object->Release();
    const std::string text = ErrorText(code);
    const std::string_view number = std::string_view(text).substr(0, text.find(' '));
    if (description.starts_with(number)) return description;
    const bool isOfAnotherCode = description.empty() || description.starts_with("0x");
    return isOfAnotherCode ? text : std::string(number) + ' ' + description;
}

}  // namespace Harbor
