// The text of a failure: a text that is parsed and written is parsed again as the same, and a failure that is passed in
// the thread's error object keeps its code, whatever its text.
#include "Common/Failures/ErrorRecord.h"
#include "Fuzzing.h"

using namespace Harbor;

namespace {

void Publish(const WideString& text) {
    ComponentPtr<Platform::ICreateErrorInfo> object;
    ComponentPtr<Platform::IErrorInfo> words;
    REQUIRE(Platform::CreateErrorInfo(object.Address()) == S_OK);
    REQUIRE(object->SetGUID(&OwnErrorGuid) == S_OK && object->SetDescription(text.c_str()) == S_OK);
    REQUIRE(object.QueryTo(words) == S_OK && Platform::SetErrorInfo(0, words.Get()) == S_OK);
}

ErrorRecord Read(std::u16string_view text) {
    ErrorRecord record;
    REQUIRE(record.Parse(text));
    return record;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const WideString text = FromUtf8(Fuzzing::AsBytes(data, size));
    Publish(text);
    const HRES arrived = HRES::Unchecked(E_FAIL);
    const WideString told = arrived.ToText();
    REQUIRE(Read(told).code == 0x80004005u);
    REQUIRE(arrived.PublishErrorInfo() == E_FAIL);
    const HRES passedOn = HRES::Unchecked(E_FAIL);
    REQUIRE(Read(passedOn.ToText()).code == 0x80004005u);

    ErrorRecord record;
    if (!record.Parse(text)) {
        REQUIRE(record.code == 0 && record.description.empty() && record.details.empty());
        return 0;
    }
    if (record.details.empty()) {
        record.description = TrimEnd(record.description);
        // A text that ends in brackets cannot be distinguished from addresses.
        if (record.description.ends_with(u']')) return 0;
    }
    const ErrorRecord again = Read(record.Text());
    REQUIRE(again.code == record.code && again.description == record.description && again.details == record.details);
    return 0;
}
