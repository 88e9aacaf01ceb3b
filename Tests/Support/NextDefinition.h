// The definition behind the one that a test program puts in front.
#pragma once

#include <dlfcn.h>

template <class Function>
Function* NextDefinitionOf(Function* own) {
    Dl_info info{};
    dladdr(reinterpret_cast<void*>(own), &info);
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, info.dli_sname));
}
