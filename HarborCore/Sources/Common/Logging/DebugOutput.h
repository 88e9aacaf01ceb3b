// Reports failures of the log itself on the debugger's output. Never writes to the log.
#pragma once

#include "Common/Base/Format.h"

namespace Harbor {

// Writes the text and a line feed to the debugger's output.
void WriteDebugText(WideString text);

// Formats as FormatWide does, then writes the result.
template <class... Arguments>
void WriteDebugOutput(std::u16string_view format, const Arguments&... arguments) {
    WriteDebugText(FormatWide(format, arguments...));
}

}  // namespace Harbor
