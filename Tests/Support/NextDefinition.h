// The definition of a function that a test program has replaced by its own.
#pragma once

#include <dlfcn.h>

template <class Function>
Function* NextDefinitionOf(Function* own) {
    Dl_info info{};
    dladdr(reinterpret_cast<void*>(own), &info);
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, info.dli_sname));
}
