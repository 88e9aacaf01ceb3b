// Attributes of functions. Outside the back ends this is the only header that depends on the compiler or on the system.
//
// PLATFORM_API         a function of the layer. On Windows the layer is linked into every binary that uses it, so its
//                      functions are not exported; on POSIX it is a shared library.
// PLATFORM_EXPORT      a function that a library exports
// PLATFORM_NOINLINE    never inlined
// PLATFORM_FORCEINLINE always inlined
#pragma once

#if defined(_WIN32)
#define PLATFORM_API
#define PLATFORM_EXPORT __declspec(dllexport)
#else
#define PLATFORM_API __attribute__((visibility("default")))
#define PLATFORM_EXPORT __attribute__((visibility("default")))
#endif

#if defined(_MSC_VER)
#define PLATFORM_NOINLINE __declspec(noinline)
#define PLATFORM_FORCEINLINE __forceinline
#else
#define PLATFORM_NOINLINE __attribute__((noinline))
#define PLATFORM_FORCEINLINE inline __attribute__((always_inline))
#endif
