// The channel for troubles of the log itself. It never touches the log.
#pragma once

#include "Common/Base/Format.h"

namespace Harbor {

// Passes the text and a line feed to the debugger's output.
void WriteDebugText(WideString text);

// Formats as printf does for wide text.
template <class... Arguments>
void WriteDebugOutput(std::u16string_view format, const Arguments&... arguments) {
    WriteDebugText(FormatWide(format, arguments...));
}

}  // namespace Harbor
