
#include "Common/Base/Text.h"
#include "Common/Failures/ErrorHandling.h"
#include "Common/Failures/ErrorRecord.h"
#include "Common/Failures/ErrorTextCache.h"
#include "Common/Failures/MethodEdge.h"
#include "Platform/Errors.h"
#include "Platform/Process.h"
#include "Stage.h"

using testing::ElementsAre;
using testing::MatchesRegex;

namespace Harbor {
namespace {

constexpr GUID ForeignGuid{};

// Sets the thread's error object, as a component could.
void SetErrorObject(const GUID& source, const WideChar* text) {
    ComponentPtr<Platform::ICreateErrorInfo> object;
    ComponentPtr<Platform::IErrorInfo> words;
    EXPECT_EQ(Platform::CreateErrorInfo(object.Address()), S_OK);
    EXPECT_EQ(object->SetGUID(&source) | object->SetDescription(text) | object.QueryTo(words), S_OK);
    EXPECT_EQ(Platform::SetErrorInfo(0, words.Get()), S_OK);
}

enum class Form { Code, AssignedCode, Unchecked, Bool, AssignedBool, BoolUnchecked, Win32, Win32Unchecked, Thrown };

// Returns the code object, whether it was thrown, and the address to which this function returns.
std::tuple<HRES, bool, const void*> Make(Form form, bool fails) {
    const HRESULT code = fails ? NOT_FOUND : S_FALSE;
    const std::uint32_t error = fails ? Platform::ERROR_NOT_FOUND : Platform::ERROR_SUCCESS;
    Platform::SetLastError(Platform::ERROR_NOT_FOUND);
    void* frames[2];
    EXPECT_EQ(Platform::RtlCaptureStackBackTrace(0, 2, frames, nullptr), 2);
    HRES hres;
    try {
        if (form == Form::Code) hres = HRES(code);
        if (form == Form::AssignedCode) hres = code;
        if (form == Form::Unchecked) hres = HRES::Unchecked(code);
        if (form == Form::Bool) hres = HRES::FromBool(!fails);
        if (form == Form::AssignedBool) hres = !fails;
        if (form == Form::BoolUnchecked) hres = HRES::FromBoolUnchecked(!fails);
        if (form == Form::Win32) hres = HRES::FromWin32(error);
        if (form == Form::Win32Unchecked) hres = HRES::FromWin32Unchecked(error);
        if (form == Form::Thrown) ThrowError(code);
    } catch (const HRX& failure) {
        return {failure, true, frames[1]};
    }
    return {hres, false, frames[1]};
}

TEST(HResult, ReadsErrorInfoThrowsAndCapturesFramesByForm) {
    // The form, whether it takes the thread's error object, whether it throws, and the code of a success.
    constexpr std::tuple<Form, bool, bool, HRESULT> forms[] = {
        {Form::Code, true, true, S_FALSE},       {Form::AssignedCode, true, true, S_FALSE},
        {Form::Unchecked, true, false, S_FALSE}, {Form::Bool, false, true, S_OK},
        {Form::AssignedBool, false, true, S_OK}, {Form::BoolUnchecked, false, false, S_OK},
        {Form::Win32, false, true, S_OK},        {Form::Win32Unchecked, false, false, S_OK},
        {Form::Thrown, false, true, E_FAIL}};
    for (const auto& [form, takesErrorObject, throws, success] : forms) {
        for (const bool fails : {false, true}) {
            SCOPED_TRACE(testing::Message() << "form " << static_cast<int>(form) << " fails " << fails);
            SetErrorObject(ForeignGuid, u"words");
            auto [result, thrown, returnsTo] = Make(form, fails);
            const bool failed = fails || form == Form::Thrown;
            EXPECT_EQ(result.Code(), fails ? NOT_FOUND : success);
            EXPECT_EQ(thrown, failed && throws);
            EXPECT_EQ(bool(result.ErrorInfo()), fails && takesErrorObject);
            const auto& [place, caller] = result.CodeAddresses();
            EXPECT_EQ(place != nullptr, failed);
            EXPECT_EQ(caller, failed ? returnsTo : nullptr) << "the caller of Make";
            EXPECT_EQ(HRES().PublishErrorInfo(), S_OK) << "a success must publish nothing";
            EXPECT_EQ(bool(HRES::Unchecked(E_FAIL).ErrorInfo()), !(fails && takesErrorObject))
                << "the error object is taken once";
            result = S_FALSE;
            EXPECT_FALSE(result.ErrorInfo());
        }
    }
}

TEST(ErrorRecord, UsesOnlyErrorInfoOfItsCode) {
    // The source and its text, and the description and details taken from it.
    const std::tuple<GUID, const WideChar*, const WideChar*, const char*> rows[] = {
        {OwnErrorGuid, u"0x80070490 No such scope [0x1;0x2]", u"No such scope", "0x1;0x2;"},
        {OwnErrorGuid, u" 2147943568 In decimal", u"In decimal", ""},
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
    for (const auto& [source, text, description, details] : rows) {
        SetErrorObject(source, text);
        const HRES failure = HRES::Unchecked(NOT_FOUND);
        const ErrorRecord record = ErrorRecord::Of(failure);
        EXPECT_EQ(record.description, description);
        EXPECT_THAT(ToUtf8(record.details), MatchesRegex(details + std::string("0x[0-9A-F]{16},0x[0-9A-F]{16}")));
        EXPECT_EQ(failure.ToText(), u"0x80070490 " + record.description + u" [" + record.details + u"]");
    }
    EXPECT_EQ((ErrorRecord{0x80004005, u"words \t ", u""}).Text(), u"0x80004005 words");
    EXPECT_EQ((ErrorRecord{0x80004005, u"", u""}).Text(), u"0x80004005");
    Stage::FrameLimit = 1;
    EXPECT_THAT(ToUtf8(HRES::Unchecked(NOT_FOUND).ToText()), MatchesRegex(".*not found \\[0x[0-9A-F]{16}\\]"));
    Stage::FrameLimit = Stage::AllFrames;
    ErrorTextCache::Instance().Store(0x80041111, u"kept");
    EXPECT_EQ(DescribeError(0x80041111), u"kept");
}

HRESULT Component(int depth) {
    return MethodEdge(TRACED_METHOD(Dbg, "Tests::Component"), [depth]() -> HRESULT {
        if (depth < 0) throw 1;
        if (depth == 0) ThrowError(E_INVALIDARG);
        return HRES(Component(depth - 1)).Code();
    });
}

TEST(MethodEdge, AddsAGroupOfAddressesAtEachEdge) {
    Stage::LogLines log("DBG");
    EXPECT_EQ(Component(2), E_INVALIDARG);
    const Stage::Strings lines = log.Take();
    ASSERT_EQ(lines.size(), 9u);
    for (std::size_t i = 0; i < 3; ++i) {  // from the innermost edge outwards
        const std::string indentation((2 - i) * 2, ' '), groups = "0x\\w{16},0x\\w{16}(;0x\\w{16},0x\\w{16}){";
        EXPECT_THAT(lines[3 + 2 * i],
                    MatchesRegex("DBG  " + indentation + "EXCEPTION at: Tests::Component \\[.* ms\\]"));
        EXPECT_THAT(
            lines[4 + 2 * i],
            MatchesRegex("ERR  " + indentation + "Tests::Component failed: 0x80070057 The parameter is incorrect \\[" +
                         groups + std::to_string(i) + "}\\]"));
    }
    EXPECT_THROW(Component(-1), int);
}

void SetMessageFiles(const std::string& files, const std::string& fallbackFiles) {
    EXPECT_EQ(setenv("GS_ErrorHandling_MessageFile", files.c_str(), 1), 0);
    EXPECT_EQ(setenv("GS_ErrorHandling_FallbackMessageFile", fallbackFiles.c_str(), 1), 0);
}

void AskEachSource() {
    const auto elsewhere = Stage::Root() / "fallback.txt";
    Stage::WriteText(Stage::ModuleDirectory() / "own.txt",
                     "0x80040200\t0\tFirst\n0x80040201\t0\t%1 is full. ..  .\n0x800401B0\t0\tnot asked\n"
                     "0x8004FFFF\t0\tLast\n0x80050000\t0\tnot asked\n");
    Stage::WriteText(elsewhere,
                     "0x80040201\t0\tnot asked\n0x800401B0\t0\tBelow the range\n0x80050000\t0\tAbove the range\n"
                     "0x80040300\t0\tOnly here\n0x80070002\t0\tnot asked\n0x8007EE00\t0\tWhole code\n"
                     "0xEE00\t0\tnot asked\n0xEE01\t0\tLow word\n");
    SetMessageFiles("own.txt", elsewhere.string() + ",own.txt");
    Stage::LogLines log;
    const std::pair<std::uint32_t, const char*> rows[] = {{0x80040200, "First"},
                                                          {0x80040201, "%1 is full"},
                                                          {0x8004FFFF, "Last"},
                                                          {0x80040300, "Only here"},
                                                          {0x800401B0, "Below the range"},
                                                          {0x80050000, "Above the range"},
                                                          {0x80070002, "The system cannot find the file specified"},
                                                          {0x8007EE00, "Whole code"},
                                                          {0x8007EE01, "Low word"},
                                                          {0x8008EE01, "<no description>"},
                                                          {0x8004EEEE, "<no description>"}};
    for (const auto& [code, text] : rows) EXPECT_EQ(ToUtf8(DescribeError(code)), text);
    EXPECT_THAT(log.Take(), ElementsAre(MatchesRegex("ERR  Loading errormsg module 'own.txt' failed: 0x8007007E The "
                                                     "specified module could not be found \\[.*\\]")))
        << "a plain name of the second list is not searched beside this module";
}

void LoadTooMany() {
    const std::string directory = Stage::ModuleDirectory().string() + "/";
    for (const char digit : {'0', '1', '2', '3', '4', '5'}) {
        Stage::WriteText(directory + digit + ".txt", std::string("0x8004020") + digit + "\t0\tmodule " + digit);
    }
    Stage::WriteText(directory + "damaged.txt", "no message\n");
    SetMessageFiles(";0.txt||1.txt,missing.txt;damaged.txt|2.txt;3.txt," + directory + "4.txt;5.txt,;", "");
    Stage::LogLines log;
    EXPECT_EQ(DescribeError(0x80040205), u"<no description>");
    for (std::uint32_t i = 0; i < 5; ++i) {
        EXPECT_EQ(ToUtf8(DescribeError(0x80040200 + i)), "module " + std::to_string(i));
    }
    const std::string begin = "ERR  Loading errormsg module '" + directory;
    EXPECT_THAT(log.Take(), ElementsAre(MatchesRegex(begin + "missing.txt' failed: 0x8007007E .*"),
                                        MatchesRegex(begin + "damaged.txt' failed: 0x800700C1 .*"),
                                        begin + "5.txt' failed: No more slots"));
}

TEST(ErrorTexts, ComeFromTheSourcesOfTheirCodeWithoutAFullStop) {
    EXPECT_IN_CHILD(AskEachSource());
    EXPECT_IN_CHILD(LoadTooMany());
}

}  // namespace
}  // namespace Harbor
