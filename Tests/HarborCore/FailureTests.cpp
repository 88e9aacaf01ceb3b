#include <random>

#include "Common/ErrorRecord.h"
#include "Common/MethodEdge.h"
#include "Platform/Errors.h"
#include "Stage.h"

// The linker's bounds of the two sections that functions below have for themselves.
extern const char failingStart[] asm("__start_failing_function"), failingStop[] asm("__stop_failing_function");
extern const char callerStart[] asm("__start_caller_of_it"), callerStop[] asm("__stop_caller_of_it");

namespace Harbor {
namespace {

constexpr GUID ForeignGuid{};

// Leaves an error object on the thread, as a component could.
void LeaveWords(const GUID& source, const WideChar* text) {
    ComponentPtr<Platform::ICreateErrorInfo> object;
    ComponentPtr<Platform::IErrorInfo> words;
    EXPECT_EQ(Platform::CreateErrorInfo(object.Address()), S_OK);
    EXPECT_EQ(object->SetGUID(&source) | object->SetDescription(text) | object.QueryTo(words), S_OK);
    EXPECT_EQ(Platform::SetErrorInfo(0, words.Get()), S_OK);
}

enum class Form { Code, AssignedCode, Unchecked, Bool, AssignedBool, BoolUnchecked, Win32, Win32Unchecked, Thrown };

struct Outcome {
    HRES result;
    bool thrown = false;
};

[[gnu::noipa, gnu::section("failing_function")]] Outcome Make(Form form, bool fails) {
    const HRESULT code = fails ? NOT_FOUND : S_FALSE;
    const std::uint32_t error = fails ? Platform::ERROR_NOT_FOUND : Platform::ERROR_SUCCESS;
    Platform::SetLastError(Platform::ERROR_NOT_FOUND);
    try {
        HRES hres;
        if (form == Form::Code) return {HRES(code)};
        if (form == Form::AssignedCode) hres = code;
        if (form == Form::Unchecked) return {HRES::Unchecked(code)};
        if (form == Form::Bool) return {HRES::FromBool(!fails)};
        if (form == Form::AssignedBool) hres = !fails;
        if (form == Form::BoolUnchecked) return {HRES::FromBoolUnchecked(!fails)};
        if (form == Form::Win32) return {HRES::FromWin32(error)};
        if (form == Form::Win32Unchecked) return {HRES::FromWin32Unchecked(error)};
        if (form == Form::Thrown) ThrowError(code);
        return {hres};
    } catch (const HRX& failure) {
        return {failure, true};
    }
}

[[gnu::noipa, gnu::section("caller_of_it")]] Outcome CallMake(Form form, bool fails) {
    Outcome outcome = Make(form, fails);
    asm volatile("" ::: "memory");  // no tail call
    return outcome;
}

TEST(HResult, ReadsWordsThrowsAndCapturesFramesAsItsFormSays) {
    constexpr struct {
        Form form;
        bool takesWords, throws;
        HRESULT success;
    } forms[] = {{Form::Code, true, true, S_FALSE},       {Form::AssignedCode, true, true, S_FALSE},
                 {Form::Unchecked, true, false, S_FALSE}, {Form::Bool, false, true, S_OK},
                 {Form::AssignedBool, false, true, S_OK}, {Form::BoolUnchecked, false, false, S_OK},
                 {Form::Win32, false, true, S_OK},        {Form::Win32Unchecked, false, false, S_OK},
                 {Form::Thrown, false, true, E_FAIL}};
    for (const auto& [form, takesWords, throws, success] : forms) {
        for (const bool fails : {false, true}) {
            SCOPED_TRACE(testing::Message() << "form " << static_cast<int>(form) << " fails " << fails);
            LeaveWords(ForeignGuid, u"words");
            Outcome outcome = CallMake(form, fails);
            const bool failed = fails || form == Form::Thrown;
            EXPECT_EQ(outcome.result.Code(), fails ? NOT_FOUND : success);
            EXPECT_EQ(outcome.thrown, failed && throws);
            EXPECT_EQ(bool(outcome.result.ErrorInfo()), fails && takesWords);
            const auto& [place, caller] = outcome.result.CodeAddresses();
            EXPECT_EQ(place > failingStart && place <= failingStop, failed) << place;
            EXPECT_EQ(caller > callerStart && caller <= callerStop, failed) << caller;
            EXPECT_EQ(HRES().PublishErrorInfo(), S_OK) << "a success publishes nothing";
            EXPECT_EQ(bool(HRES::Unchecked(E_FAIL).ErrorInfo()), !(fails && takesWords)) << "words are taken once";
            outcome.result = S_FALSE;
            EXPECT_FALSE(outcome.result.ErrorInfo());
        }
    }
}

TEST(ErrorRecord, TakesTheWordsThatBelongToItsCode) {
    const struct {
        GUID source;
        const WideChar *text, *description;
        const char* details;
    } rows[] = {{OwnErrorGuid, u"0x80070490 No such scope [0x1;0x2]", u"No such scope", "0x1;0x2;"},
                {OwnErrorGuid, u" 2147943568 In decimal", u"In decimal", ""},
                {OwnErrorGuid, u"020001602220 In octal", u"In octal", ""},
                {OwnErrorGuid, u"-2147023728 Negative", u"Negative", ""},
                {OwnErrorGuid, u"0x80070490 A [b] \t[c,d]", u"A [b]", "c,d;"},
                {OwnErrorGuid, u"0x80070490 Closed]", u"Closed]", ""},
                {OwnErrorGuid, u"0x80070490 Open [a", u"Open [a", ""},
                {OwnErrorGuid, u"0x80070490 ]", u"]", ""},
                {OwnErrorGuid, u"0x80070490:No blank", u"Element not found", ""},
                {OwnErrorGuid, u"0x80070490", u"Element not found", ""},
                {OwnErrorGuid, u"0x80070490 [0x1]", u"Element not found", "0x1;"},
                {OwnErrorGuid, u"0x80004005 Stale words [0x1]", u"Element not found", ""},
                {OwnErrorGuid, u"no number", u"Element not found", ""},
                {ForeignGuid, u"0x80004005 As it stands [0x1]", u"0x80004005 As it stands [0x1]", ""},
                {ForeignGuid, u"", u"Element not found", ""}};
    for (const auto& row : rows) {
        LeaveWords(row.source, row.text);
        const HRES failure = HRES::Unchecked(NOT_FOUND);
        const ErrorRecord record = ErrorRecord::Of(failure);
        EXPECT_EQ(record.description, row.description);
        EXPECT_THAT(ToUtf8(record.details),
                    testing::MatchesRegex(row.details + std::string("0x[0-9A-F]{16},0x[0-9A-F]{16}")));
        EXPECT_EQ(failure.ToText(), u"0x80070490 " + record.description + u" [" + record.details + u"]");
    }
}

TEST(ErrorRecord, ComesBackFromItsText) {
    std::mt19937 random(20240305);
    const auto pick = [&](std::u16string_view letters, std::size_t longest) {
        WideString text(random() % (longest + 1), u'\0');
        for (WideChar& letter : text) letter = letters[random() % letters.size()];
        return text;
    };
    for (int i = 0; i < 2000; ++i) {
        WideString description = pick(u"ab 0x,;.[]\t\u00E9\u6F22", 12), details = pick(u"0xAF,;", 9);
        description.resize(TrimEnd(description).size());
        if (details.empty() && description.ends_with(u']')) description += u'.';
        const ErrorRecord written{static_cast<std::uint32_t>(random()), description, details};
        ErrorRecord read;
        ASSERT_TRUE(read.Parse(written.Text())) << ToUtf8(written.Text());
        ASSERT_EQ(std::tie(read.code, read.description, read.details), std::tie(written.code, description, details));
    }
}

HRESULT Component(int depth) {
    return MethodEdge(TRACED_METHOD(Dbg, "Tests::Component"), [depth] {
        if (depth == 0) ThrowError(E_INVALIDARG);
        HRES hres = Component(depth - 1);
        return S_OK;
    });
}

TEST(MethodEdge, GathersAGroupOfAddressesForEachEdgeThatAFailurePasses) {
    Stage::LogLines log("DBG");
    EXPECT_EQ(Component(2), E_INVALIDARG);
    Stage::Strings lines = log.Take();
    ASSERT_EQ(lines.size(), 9u);
    for (std::size_t i = 0; i < 3; ++i) {  // the way out, from the innermost edge
        const std::string indentation((2 - i) * 2, ' '), groups = "0x\\w{16},0x\\w{16}(;0x\\w{16},0x\\w{16}){";
        EXPECT_THAT(lines[3 + 2 * i],
                    testing::MatchesRegex("DBG  " + indentation + "EXCEPTION at: Tests::Component \\[.* ms\\]"));
        EXPECT_THAT(lines[4 + 2 * i], testing::MatchesRegex("ERR  " + indentation +
                                                            "Tests::Component failed: 0x80070057 The parameter is " +
                                                            "incorrect \\[" + groups + std::to_string(i) + "}\\]"));
    }
    EXPECT_THROW(static_cast<void>(MethodEdge(TRACED_METHOD(Dbg, "Tests::Foreign"), []() -> HRESULT { throw 1; })),
                 int);
}

}  // namespace
}  // namespace Harbor
