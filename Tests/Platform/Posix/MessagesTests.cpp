#include "Platform/Messages.h"

#include <gtest/gtest.h>

#include <optional>

#include "Platform/Errors.h"
#include "Platform/Modules.h"
#include "Support/ScopedVariable.h"
#include "Support/TemporaryDirectory.h"

namespace {

using namespace Platform;

constexpr DWORD Flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS;
constexpr DWORD German = 0x0407, English = 0x0409, BritishEnglish = 0x0809;

std::optional<WideString> Ask(DWORD source, HMODULE module, DWORD code, DWORD language) {
    WideChar* buffer = nullptr;
    const DWORD length =
        FormatMessageW(Flags | source, module, code, language, reinterpret_cast<WideChar*>(&buffer), 0, nullptr);
    if (length == 0) return std::nullopt;
    EXPECT_EQ(buffer[length], u'\0');
    WideString text(buffer, length);
    LocalFree(buffer);
    return text;
}

std::optional<WideString> AskSystem(DWORD code, DWORD language = 0) {
    return Ask(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, language);
}

TEST(SystemMessages, AreReturnedForEveryEnglishLocaleAndForNoOtherLanguage) {
    EXPECT_EQ(AskSystem(5, English), u"Access is denied.\r\n");
    EXPECT_EQ(AskSystem(5, BritishEnglish), u"Access is denied.\r\n");
    EXPECT_EQ(AskSystem(0x80040201), std::nullopt);
    EXPECT_EQ(GetLastError(), ERROR_MR_MID_NOT_FOUND);
    EXPECT_EQ(AskSystem(5, German), std::nullopt);
    EXPECT_EQ(GetLastError(), ERROR_RESOURCE_LANG_NOT_FOUND);
}

class MessageModules : public ::testing::Test {
protected:
    HMODULE Load(const std::string& bytes) const {
        WriteAll(file_, bytes);
        return LoadFile(file_);
    }
    static HMODULE LoadFile(const std::filesystem::path& path) {
        return LoadLibraryExW(path.u16string().c_str(), nullptr,
                              LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
    }
    static std::optional<WideString> AskModule(HMODULE module, DWORD code, DWORD language = 0) {
        return Ask(FORMAT_MESSAGE_FROM_HMODULE, module, code, language);
    }

    const TemporaryDirectory directory_;
    const std::filesystem::path file_ = directory_ / "Texts.dll";
};

TEST_F(MessageModules, ReturnTheTextOfTheLanguageOrTheTextForAnyLanguage) {
    const HMODULE module = Load(
        "; comment\n\n0x80040202\t0x0407\tnur deutsch\n0x80040201\t1031\tdeutsch\n"
        "0x80040201\t0\ta\\nb\\tc\\\\n %1\n0x80040201\t0x0409\tenglish\r\n"
        "0x80040203\t1036\tfran\xC3\xA7"
        "ais\n0x80040203\t1033\tenglish");
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(AskModule(module, 0x80040201, German), u"deutsch");
    EXPECT_EQ(AskModule(module, 0x80040201, BritishEnglish), u"a\nb\tc\\n %1");
    EXPECT_EQ(AskModule(module, 0x80040201), u"a\nb\tc\\n %1");
    EXPECT_EQ(AskModule(module, 0x80040202), u"nur deutsch");
    EXPECT_EQ(AskModule(module, 0x80040203), u"english");
    EXPECT_EQ(AskModule(module, 0x80040203, 0x040C), u"fran\u00E7ais");
    EXPECT_EQ(AskModule(module, 0x80040202, English), std::nullopt);
    EXPECT_EQ(GetLastError(), ERROR_MR_MID_NOT_FOUND);
    EXPECT_TRUE(FreeLibrary(module));
}

TEST_F(MessageModules, AreRejectedIfALineIsMalformedOrTheFileIsUnreadable) {
    for (const char* const line :
         {"80040201\t0\ttext", "0x80040201 0 text", "0x80040201\t0", "0x80040201\t0\t", "0x180040201\t0\ttext",
          "0x80040201\t65536\ttext", "0x80040201\tde\ttext", "0x80040201\t0\ta\\x", "0x80040201\t0\ta\\",
          "\x7F"
          "ELF"}) {
        EXPECT_EQ(Load(std::string("0x1\t0\tgood\n") + line + "\n0x2\t0\tgood\n"), nullptr) << line;
        EXPECT_EQ(GetLastError(), ERROR_BAD_EXE_FORMAT) << line;
    }
    EXPECT_EQ(LoadFile(directory_ / "none.dll"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(LoadFile(directory_.Path()), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
}

TEST_F(MessageModules, AreFoundBesideTheProgramAndInTheWorkingDirectory) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(directory_.Path());
    const std::string name = directory_.Path().filename().string() + ".msg";
    for (const auto& place : {directory_.Path(), std::filesystem::read_symlink("/proc/self/exe").parent_path()}) {
        EXPECT_EQ(LoadFile(name), nullptr);
        WriteAll(place / name, "0x80040201\t0\tText\n");
        EXPECT_TRUE(FreeLibrary(LoadFile(name))) << place;
        std::filesystem::remove(place / name);
    }
    std::filesystem::current_path(before);
}

}  // namespace
