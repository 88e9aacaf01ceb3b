#include "Host/Base/Failure.h"

#include "Common/Base/HRes.h"
#include "Common/Base/Text.h"

namespace Host {

using namespace Harbor;

namespace {

void Check(const HRES& result, std::string_view what) {
    if (result.Failed()) throw CallFailure(std::string(what) + ": " + ToUtf8(result.ToText()));
}

}  // namespace

void Refuse(std::string_view option, std::string_view value, std::string_view right) {
    std::string text(option);
    text.append(": \"").append(value).append("\" is wrong; give ").append(right);
    throw BadInput(text);
}

void Check(HRESULT code, std::string_view what) {
    Check(HRES::Unchecked(code), what);
}

void CheckPlatform(bool result, std::string_view what) {
    Check(HRES::FromBoolUnchecked(result), what);
}

}  // namespace Host
