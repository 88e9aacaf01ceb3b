#include "Host/Base/Failure.h"

#include "Common/Base/HRes.h"
#include "Common/Base/Text.h"

namespace Host {

using namespace Harbor;

namespace {

void RequireSuccess(const HRES& result, std::string_view what) {
    if (result.Failed()) throw CallFailure(std::string(what) + ": " + ToUtf8(result.ToText()));
}

}  // namespace

BadInput InvalidValue(std::string_view source, std::string_view value, std::string_view expected) {
    std::string text(source);
    text.append(": \"").append(value).append("\" is not valid; expected ").append(expected);
    return BadInput(text);
}

void RequireSuccess(HRESULT code, std::string_view what) {
    RequireSuccess(HRES::Unchecked(code), what);
}

void RequirePlatformSuccess(bool succeeded, std::string_view what) {
    RequireSuccess(HRES::FromBoolUnchecked(succeeded), what);
}

}  // namespace Host
