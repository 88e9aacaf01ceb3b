#include "Host/Base/Failure.h"

namespace Host {
namespace {

std::string NotValid(std::string_view source, std::string_view value) {
    return std::string(source).append(": \"").append(value).append("\" is not valid");
}

}  // namespace

BadInput InvalidValue(std::string_view source, std::string_view value, const BadForm& form) {
    return BadInput(NotValid(source, value).append(": ").append(form.what()));
}

BadInput InvalidValue(std::string_view source, std::string_view value, std::string_view expected) {
    return BadInput(NotValid(source, value).append("; expected ").append(expected));
}

}  // namespace Host
