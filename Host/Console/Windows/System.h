// The system's header. It must be the last one of a source: its macros have common names.
#pragma once

#define NOMINMAX 1
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
