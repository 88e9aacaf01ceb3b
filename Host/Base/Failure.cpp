#include "Host/Base/Failure.h"

#include "Common/Base/HRes.h"
#include "Common/Base/Text.h"

namespace Host {

using namespace Harbor;

namespace {

void RequireSuccess(const HRES& result, std::string_view what) {
    if (result.Failed()) throw CallFailure(std::string(what) + ": " + ToUtf8(result.ToText()));
}

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

void RequireSuccess(HRESULT code, std::string_view what) {
    RequireSuccess(HRES::Unchecked(code), what);
}

void RequirePlatformSuccess(bool succeeded, std::string_view what) {
    RequireSuccess(HRES::FromBoolUnchecked(succeeded), what);
}

}  // namespace Host
