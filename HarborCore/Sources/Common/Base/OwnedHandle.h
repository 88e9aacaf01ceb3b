// Owning handles of the system's objects.
#pragma once

#include "Harbor/OwnedHandle.h"
#include "Platform/Files.h"

namespace Harbor {

// A file or a thread's token. CreateFileW reports a failure as INVALID_HANDLE_VALUE, which must not be stored here.
using SystemHandle = OwnedHandle<Platform::HANDLE, &Platform::CloseHandle>;

}  // namespace Harbor
