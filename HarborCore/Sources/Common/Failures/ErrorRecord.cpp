#include "Common/Failures/ErrorRecord.h"

#include "Common/Base/Format.h"
#include "Common/Base/OwnedHandle.h"
#include "Common/Base/Text.h"
#include "Common/Failures/ErrorHandling.h"
#include "Harbor/ErrorText.h"

namespace Harbor {
namespace {

using OwnedBstr = OwnedHandle<Platform::BSTR, &Platform::SysFreeString>;

// Null if memory runs out.
OwnedBstr MakeBstr(std::u16string_view text) noexcept {
    return OwnedBstr(Platform::SysAllocStringLen(text.data(), static_cast<std::uint32_t>(text.size())));
}

// Stores the description of the error object in the record. A description that this framework wrote is parsed; any
// other one is stored unchanged.
void ReadErrorInfo(Platform::IErrorInfo& errorInfo, ErrorRecord& record) {
    WideString description = DescriptionOf(errorInfo);
    if (description.empty()) return;
    GUID source{};
    if (Succeeded(errorInfo.GetGUID(&source)) && source == OwnErrorGuid) {
        record.Parse(description);
    } else {
        record.description = std::move(description);
    }
}

void AppendFrames(const Frames& frames, WideString& details) {
    std::size_t count = frames.size();
    while (count > 0 && frames[count - 1] == nullptr) --count;
    if (count == 0) return;
    WideStream stream;
    for (std::size_t i = 0; i < count; ++i) {
        stream << (i > 0 ? u"," : details.empty() ? u"" : u";") << u"0x" << frames[i];
    }
    details += stream.View();
}

ComponentPtr<Platform::IErrorInfo> MakeErrorInfo(const WideString& text) {
    ComponentPtr<Platform::ICreateErrorInfo> creation;
    if (Failed(Platform::CreateErrorInfo(creation.Address()))) return {};
    const OwnedBstr description = MakeBstr(text);
    if (!description || Failed(creation->SetDescription(description.get()))) return {};
    if (Failed(creation->SetGUID(&OwnErrorGuid))) return {};
    ComponentPtr<Platform::IErrorInfo> object;
    if (Failed(creation.QueryTo(object))) return {};
    return object;
}

}  // namespace

ErrorRecord ErrorRecord::Of(const HRES& failure) {
    const auto code = static_cast<std::uint32_t>(failure.Code());
    ErrorRecord record;
    record.code = code;
    if (failure.ErrorInfo()) ReadErrorInfo(*failure.ErrorInfo().Get(), record);
    if (record.code != code) record = {};  // the error object describes another failure
    record.code = code;
    if (record.description.empty()) record.description = DescribeError(code);
    AppendFrames(failure.CodeAddresses(), record.details);
    return record;
}

WideString ErrorRecord::Text() const {
    WideString text;
    text.reserve(description.size() + details.size() + 16);
    text.append(FormatWide(u"0x%08X ", code)).append(description);
    if (!details.empty()) text.append(u" [").append(details).append(u"]");
    text.resize(TrimEnd(text).size());
    return text;
}

bool ErrorRecord::Parse(std::u16string_view text) {
    const ParsedNumber number = ParseNumber(text);
    if (number.consumed == 0) return false;
    std::u16string_view words = text.substr(number.consumed);
    words = words.starts_with(u' ') ? words.substr(1) : std::u16string_view();
    std::u16string_view addresses;
    if (words.size() > 1 && words.ends_with(u']')) {
        if (const std::size_t open = words.rfind(u'['); open != words.npos) {
            addresses = words.substr(open + 1, words.size() - open - 2);
            words = TrimEnd(words.substr(0, open));
        }
    }
    *this = {number.value, WideString(words), WideString(addresses)};
    return true;
}

WideString HRES::ToText() const {
    return ErrorRecord::Of(*this).Text();
}

HRESULT HRES::PublishErrorInfo() const {
    if (!Failed()) return code_;
    try {
        return PublishErrorInfo(ToText());
    } catch (...) {
        // The caller must receive the code, not another exception; it receives the code without a text.
        Platform::SetErrorInfo(0, nullptr);
        return code_;
    }
}

HRESULT HRES::PublishErrorInfo(const WideString& text) const {
    if (Failed()) Platform::SetErrorInfo(0, MakeErrorInfo(text).Get());
    return code_;
}

WideStream& operator<<(WideStream& stream, const HRES& result) {
    return stream << result.ToText();
}

}  // namespace Harbor
