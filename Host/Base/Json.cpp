#include "Host/Base/Json.h"

namespace Host {

std::string JsonLine(const Json& value) {
    constexpr int onOneLine = -1;
    constexpr char indentation = ' ';
    constexpr bool escapeNonAscii = false;
    return value.dump(onOneLine, indentation, escapeNonAscii, Json::error_handler_t::replace) + "\n";
}

}  // namespace Host
