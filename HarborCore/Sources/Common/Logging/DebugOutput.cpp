#include "Common/Logging/DebugOutput.h"

#include "Platform/Process.h"

namespace Harbor {

void WriteDebugText(WideString text) {
    text += u'\n';
    Platform::OutputDebugStringW(text.c_str());
}

}  // namespace Harbor
