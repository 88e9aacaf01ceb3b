#include "Common/Settings/ModuleInfo.h"
#include "Common/Settings/Registry.h"
#include "Common/Settings/SettingsSection.h"
#include "Common/Settings/SettingsStore.h"
#include "Stage.h"

namespace Harbor {
namespace {

using Stage::Variable;

class Settings : public testing::Test {
protected:
    ~Settings() override {
        std::filesystem::remove_all(Stage::ProcessDirectory());
        std::filesystem::remove_all(Stage::ModuleDirectory());
    }
    static void WriteHostIni(const std::string& text) {
        Stage::WriteText(Stage::ProcessDirectory() / "Host.ini", text);
    }

    Variable variable_{"GS_Test_Key", std::nullopt};
    Variable globalIni_{"GLOBAL_SETTINGS_INI", std::nullopt};
};

TEST_F(Settings, ComeFromTheFirstPlaceThatHasThem) {
    const std::filesystem::path files[] = {Stage::Root() / "any.ini",
                                           Stage::ProcessDirectory() / "Host.ini",
                                           Stage::ProcessDirectory() / "Orv.ini",
                                           Stage::ProcessDirectory() / "GlobalSettings.ini",
                                           Stage::ModuleDirectory() / "Orv.ini",
                                           Stage::ModuleDirectory() / "GlobalSettings.ini"};
    std::vector<WideString> chain;
    for (const auto& file : files) {
        Stage::WriteText(file, "[Test]\nKey= " + file.string() + " \n");
        chain.push_back(Stage::Wide(file));
    }
    EXPECT_EQ(IniSettingsSource().Files(), std::vector(chain.begin() + 1, chain.end()));
    globalIni_.Set(files[0].string());
    variable_.Set("  ");
    EXPECT_EQ(GetSettingOr(u"Test", u"Key", u"default"), u"") << "an empty variable is a setting";
    variable_.Set(std::nullopt);
    for (const auto& file : files) {
        EXPECT_EQ(GetSettingOr(u"Test", u"Key", u"default"), Stage::Wide(file));
        Stage::WriteText(file, "[Test]\nKey=\n");  // an empty key is none
    }
    EXPECT_EQ(GetSettingOr(u"Test", u"Key", u"default"), u"default");
    globalIni_.Set("/nowhere/missing.ini");
    WriteHostIni("\xEF\xBB\xBF; first\n[general]\nkey=\t\"in a file\" \n");
    WideString value;
    EXPECT_EQ(GetSetting(nullptr, u"Key", value), S_OK);
    EXPECT_EQ(value, u"in a file");
}

TEST_F(Settings, AreReadWholeHoweverLongTheyAre) {
    for (const std::size_t length : {1u, 258u, 259u, 260u, 519u, 4000u}) {
        const std::string text(length, 'x');
        WriteHostIni("[Test]\nKey=" + text + "\n");
        variable_.Set(std::nullopt);
        EXPECT_EQ(ToUtf8(GetSettingOr(u"Test", u"Key", u"")), text);
        variable_.Set(text + "y");
        EXPECT_EQ(ToUtf8(GetSettingOr(u"Test", u"Key", u"")), text + "y");
    }
}

TEST_F(Settings, AreNumbersOnlyAsAWhole) {
    WriteHostIni("[Test]\nKey=77\n");
    const struct {
        const char* text;
        HRESULT code;
        std::uint32_t number;
    } rows[] = {{"0x10", S_OK, 16},       {"010", S_OK, 8},        {" 7 ", S_OK, 7},
                {"-1", S_OK, 0xFFFFFFFF}, {"0", S_OK, 0},          {"12abc", E_INVALIDARG, 0},
                {"", E_INVALIDARG, 0},    {"0x", E_INVALIDARG, 0}, {"09", E_INVALIDARG, 0}};
    for (const auto& [text, code, number] : rows) {
        SCOPED_TRACE(text);
        variable_.Set(text);
        std::uint32_t value = 0;
        EXPECT_EQ(EnvironmentSettingsSource().GetNumber(u"Test", u"Key", value), code);
        EXPECT_EQ(value, number);
        EXPECT_EQ(GetSettingNumberOr(u"Test", u"Key", 5), Succeeded(code) ? number : 77) << "the next source is asked";
    }
    EXPECT_EQ(GetSettingNumberOr(u"Test", u"Other", 5), 5u);
}

struct FailingSource : SettingsSource {
    HRESULT GetString(const WideChar*, const WideChar*, WideString&) override { return code; }
    HRESULT code = E_ABORT;
};

TEST_F(Settings, EndTheirSearchAtAnAbort) {
    variable_.Set("1");
    {
        RegisteredSource<FailingSource> source(SettingsStore::Instance(), true);
        WideString value;
        EXPECT_EQ(GetSetting(u"Test", u"Key", value), E_ABORT);
        EXPECT_EQ(GetSettingNumberOr(u"Test", u"Key", 5), 5u);
        source.code = E_UNEXPECTED;
        EXPECT_EQ(GetSetting(u"Test", u"Key", value), S_OK);
    }
    EXPECT_EQ(GetSettingNumberOr(u"Test", u"Key", 5), 1u);
}

TEST_F(Settings, OfASectionStayAsTheyWereUntilTheirCacheIsClearedOrExpires) {
    SettingsSection section(u"Test", 100);
    Stage::Ticks = 0xFFFFFFF0;  // the clock wraps within the interval
    WideString text;
    std::uint32_t number = 0;
    EXPECT_FALSE(section.GetString(u"Key", text, true));
    variable_.Set("1");
    EXPECT_FALSE(section.GetNumber(u"Key", number, true)) << "texts and numbers share what is missing";
    EXPECT_TRUE(section.GetNumber(u"Key", number, false));
    EXPECT_FALSE(section.GetNumber(u"Key", number, true)) << "an uncached read is not remembered";
    section.Clear();
    for (const std::uint32_t expected : {1u, 1u, 4u}) {
        EXPECT_TRUE(section.GetString(u"Key", text, true) && section.GetNumber(u"Key", number, true));
        EXPECT_EQ(number, expected);
        EXPECT_EQ(ToUtf8(text), std::to_string(expected));
        variable_.Set(expected == 1 && Stage::Ticks == 0xFFFFFFF0 ? "3" : "4");
        Stage::Ticks += Stage::Ticks == 0xFFFFFFF0 ? 100 : 1;
    }
}

TEST(Registry, GivesTheTextsOfAKeyByItsRoot) {
    const WideString longName(300, u'n'), value(300, u'e');
    Stage::WriteText(
        Stage::Root() / "registry.reg",
        "Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\Soft\\Orv]\n@=\"default\"\n\"Number\"="
        "dword:00000001\n\"Expand\"=hex(2):25,00,45,00,25,00,00,00\n\"" +
            ToUtf8(longName) + "\"=\"<%E%>\"\n\n[HKEY_CURRENT_USER\\Soft\\Orv]\n\"User\"=\"yes\"\n");
    const Variable file("ORV_REGISTRY_FILE", (Stage::Root() / "registry.reg").string());
    const Variable expanded("E", ToUtf8(value));
    using Values = std::map<WideString, WideString>;
    const Values machine{{u"", u"default"}, {u"Expand", value}, {longName, u"<" + value + u">"}};
    const std::pair<const WideChar*, Values> rows[] = {
        {u"HKLM\\Soft\\Orv", machine}, {u"HKEY_LOCAL_MACHINE/Soft\\Orv", machine}, {u"Soft\\Orv", machine},
        {u"hkcu\\Soft\\Orv", {}},      {u"HKCU\\Soft\\Orv", {{u"User", u"yes"}}},  {u"HKLM\\Missing", {}}};
    for (const auto& [key, values] : rows) EXPECT_EQ(ReadRegistryValues(key), values) << ToUtf8(key);
}

}  // namespace
}  // namespace Harbor
