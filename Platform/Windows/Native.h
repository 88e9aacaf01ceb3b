// The casts between the layer's types and the system's types of the same sizes. This header includes the system's,
// whose macros have the names of constants of the layer: it must be the last header of a source.
#pragma once

#define NOMINMAX 1
#define WIN32_LEAN_AND_MEAN

#include <windows.h>

namespace Platform::Windows {

inline wchar_t* Native(char16_t* text) noexcept {
    return reinterpret_cast<wchar_t*>(text);
}
inline const wchar_t* Native(const char16_t* text) noexcept {
    return reinterpret_cast<const wchar_t*>(text);
}
inline ::DWORD* Native(std::uint32_t* number) noexcept {
    return reinterpret_cast<::DWORD*>(number);
}
inline ::HANDLE Native(HandleOpaque* handle) noexcept {
    return reinterpret_cast<::HANDLE>(handle);
}
inline ::HANDLE* Native(HandleOpaque** handle) noexcept {
    return reinterpret_cast<::HANDLE*>(handle);
}
inline ::HMODULE Native(ModuleOpaque* module) noexcept {
    return reinterpret_cast<::HMODULE>(module);
}
inline ::HMODULE* Native(ModuleOpaque** module) noexcept {
    return reinterpret_cast<::HMODULE*>(module);
}
inline HandleOpaque* Layer(::HANDLE handle) noexcept {
    return static_cast<HandleOpaque*>(handle);
}
inline ModuleOpaque* Layer(::HMODULE module) noexcept {
    return reinterpret_cast<ModuleOpaque*>(module);
}

// A structure of the layer as the system's structure of the same layout, which the caller names.
template <class System, class Structure>
System* As(Structure* structure) noexcept {
    static_assert(sizeof(System) == sizeof(Structure) && alignof(System) <= alignof(Structure));
    return reinterpret_cast<System*>(structure);
}

}  // namespace Platform::Windows
