// Attributes of functions: exported, never inlined, always inlined. Outside the back ends this is the only header that
// depends on the compiler.
#pragma once

#if defined(_MSC_VER)
#define PLATFORM_EXPORT __declspec(dllexport)
#define PLATFORM_NOINLINE __declspec(noinline)
#define PLATFORM_FORCEINLINE __forceinline
#else
#define PLATFORM_EXPORT __attribute__((visibility("default")))
#define PLATFORM_NOINLINE __attribute__((noinline))
#define PLATFORM_FORCEINLINE inline __attribute__((always_inline))
#endif
