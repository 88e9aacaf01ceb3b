// The basic types that cross a component boundary.
#pragma once

#include "Platform/Types.h"

namespace Harbor {

using Platform::GUID;
using Platform::HRESULT;
using Platform::WideChar;
using Platform::WideString;

}  // namespace Harbor
