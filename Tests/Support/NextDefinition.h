// The definition of a function that a test program has replaced by its own.
#pragma once

#include "Support/ThisSystem.h"

// `name` is the function's plain name.
template <class Function>
Function* NextDefinitionOf(Function* own, const char* name) {
    return reinterpret_cast<Function*>(ThisSystem::NextDefinition(reinterpret_cast<void*>(own), name));
}
