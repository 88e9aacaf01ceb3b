#include <sys/stat.h>
#include <unistd.h>

#include "Common/Settings/DataDirectory.h"
#include "Common/Settings/Paths.h"
#include "Common/Settings/Registry.h"
#include "Common/Settings/SettingsSection.h"
#include "Common/Settings/SettingsStore.h"
#include "Stage.h"

namespace Harbor {
namespace {

class Settings : public testing::Test {
protected:
    ~Settings() override {
        std::filesystem::remove_all(Stage::ProcessDirectory());
        std::filesystem::remove_all(Stage::ModuleDirectory());
    }
    static void WriteHostIni(const std::string& text) {
        Stage::WriteText(Stage::ProcessDirectory() / "Host.ini", text);
    }

    void SetKey(const Stage::Setting& value) { key_.emplace("GS_Test_Key", value); }

private:
    std::optional<ScopedVariable> key_;
};

TEST_F(Settings, ComeFromTheFirstSourceThatHasThem) {
    const auto process = Stage::ProcessDirectory(), module = Stage::ModuleDirectory();
    const std::filesystem::path files[] = {Stage::Root() / "any.ini", process / "Host.ini",
                                           process / "Orv.ini",       process / "GlobalSettings.ini",
                                           module / "Orv.ini",        module / "GlobalSettings.ini"};
    for (const auto& file : files) Stage::WriteText(file, "[Test]\nKey= " + file.string() + " \n");
    const ScopedVariable globalIni("GLOBAL_SETTINGS_INI", files[0].string());
    SetKey("  ");
    EXPECT_EQ(GetSettingOr(u"Test", u"Key", u"default"), u"") << "an empty variable is a setting";
    SetKey(std::nullopt);
    for (const auto& file : files) {
        EXPECT_EQ(GetSettingOr(u"Test", u"Key", u"default"), Stage::Wide(file));
        Stage::WriteText(file, "[Test]\nKey=\n");  // an empty key counts as missing
    }
    EXPECT_EQ(GetSettingOr(u"Test", u"Key", u"default"), u"default");
    const ScopedVariable missing("GLOBAL_SETTINGS_INI", "/nowhere/missing.ini");
    WriteHostIni("\xEF\xBB\xBF; first\n[general]\nkey=\t\"in a file\" \n");
    EXPECT_EQ(GetSettingOr(nullptr, u"Key", u""), u"in a file");
}

TEST_F(Settings, ThatCannotBeReadAreNotTreatedAsMissing) {
    const auto file = Stage::ProcessDirectory() / "Host.ini";
    Stage::WriteText(Stage::ProcessDirectory() / "GlobalSettings.ini", "[Test]\nKey=1\n");
    WideString value;
    std::shared_ptr<void> unreadable = Stage::MakeUnreadable(file);
    EXPECT_EQ(GetSetting(u"Test", u"Key", value), S_OK) << "the next file is asked";
    EXPECT_EQ(GetSetting(u"Test", u"Other", value), E_ABORT);
    std::filesystem::remove(Stage::ProcessDirectory() / "GlobalSettings.ini");
    EXPECT_EQ(GetSetting(u"Test", u"Key", value), E_ABORT);
    unreadable.reset();
    WriteHostIni("[Test]\nKey=1\n");
    const int lease = Stage::TakeLease(file);
    EXPECT_EQ(GetSetting(u"Test", u"Key", value), E_ABORT);
    close(lease);
    EXPECT_EQ(GetSetting(u"Test", u"Key", value), S_OK);
    std::filesystem::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(GetSetting(u"Test", u"Key", value), NOT_FOUND) << "a pipe without a writer is an empty file";
}

TEST_F(Settings, AreReadInFullAtAnyLength) {
    for (const std::size_t length : {1u, 258u, 259u, 260u, 519u, 4000u}) {
        const std::string text(length, 'x');
        WriteHostIni("[Test]\nKey=" + text + "\n");
        SetKey(std::nullopt);
        EXPECT_EQ(ToUtf8(GetSettingOr(u"Test", u"Key", u"")), text);
        SetKey(text + "y");
        EXPECT_EQ(ToUtf8(GetSettingOr(u"Test", u"Key", u"")), text + "y");
    }
}

TEST_F(Settings, AreNumbersOnlyIfTheWholeTextIsANumber) {
    WriteHostIni("[Test]\nKey=77\n");
    const std::tuple<const char*, HRESULT, std::uint32_t> rows[] = {
        {"0x10", S_OK, 16},       {"010", S_OK, 8},        {" 7 ", S_OK, 7},
        {"-1", S_OK, 0xFFFFFFFF}, {"0", S_OK, 0},          {"12abc", E_INVALIDARG, 0},
        {"", E_INVALIDARG, 0},    {"0x", E_INVALIDARG, 0}, {"09", E_INVALIDARG, 0}};
    for (const auto& [text, code, number] : rows) {
        SCOPED_TRACE(text);
        SetKey(text);
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

TEST_F(Settings, AreNotSearchedFurtherAfterAnAbort) {
    SetKey("1");
    WideString value;
    {
        RegisteredSource<FailingSource> source(SettingsStore::Instance(), AtEnd::Remove);
        EXPECT_EQ(GetSetting(u"Test", u"Key", value), E_ABORT);
        source.code = E_UNEXPECTED;
        EXPECT_EQ(GetSetting(u"Test", u"Key", value), S_OK);
        source.code = E_ABORT;
    }
    EXPECT_EQ(GetSetting(u"Test", u"Key", value), S_OK) << "the source has been removed";
}

TEST_F(Settings, OfASectionAreCachedUntilClearedOrExpired) {
    SettingsSection section(u"Test", 100);
    Stage::Ticks = 0xFFFFFFF0;  // the clock overflows within the interval
    WideString text;
    std::uint32_t number = 0;
    EXPECT_FALSE(section.GetString(u"Key", text, UseCache::Yes));
    SetKey("1");
    EXPECT_FALSE(section.GetNumber(u"Key", number, UseCache::Yes)) << "a missing text is also a missing number";
    EXPECT_TRUE(section.GetNumber(u"Key", number, UseCache::No));
    EXPECT_FALSE(section.GetNumber(u"Key", number, UseCache::Yes)) << "an uncached read must not be cached";
    section.Clear();
    // The value read, the new value of the setting, and the time until the next read.
    for (const auto& [expected, next, pause] : {std::tuple(1u, "3", 100u), {1u, "4", 1u}, {4u, "5", 0u}}) {
        EXPECT_TRUE(section.GetString(u"Key", text, UseCache::Yes) && section.GetNumber(u"Key", number, UseCache::Yes));
        EXPECT_EQ(number, expected);
        EXPECT_EQ(ToUtf8(text), std::to_string(expected));
        SetKey(next);
        Stage::Ticks += pause;
    }
}

TEST(Registry, ReturnsTheTextsOfAKeyByItsRoot) {
    const std::string longName(300, 'n'), longValue(300, 'e'), path = Stage::Root() / "registry.reg";
    Stage::WriteText(path, "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Orv]\n@=\"x\"\n\"Number\"=dword:00000001\n\"" + longName +
                               "\"=\"<%E%>\"\n[HKEY_CURRENT_USER\\Orv]\n\"User\"=\"yes\"\n");
    const ScopedVariable file("ORV_REGISTRY_FILE", path), expanded("E", longValue);
    using Values = std::map<WideString, WideString>;
    const Values machine{{u"", u"x"}, {FromUtf8(longName), FromUtf8("<" + longValue + ">")}};
    const std::pair<const WideChar*, Values> rows[] = {{u"HKLM\\Orv", machine},
                                                       {u"HKEY_LOCAL_MACHINE/Orv", machine},
                                                       {u"Orv", machine},
                                                       {u"hkcu\\Orv", {}},
                                                       {u"HKCU\\Orv", {{u"User", u"yes"}}}};
    for (const auto& [key, values] : rows) EXPECT_EQ(ReadRegistryValues(key), values) << ToUtf8(key);
}

void Resolve(const char* path, const char* expected) {
    std::string resolved = ToUtf8(ResolveDataPath(FromUtf8(path)));
    std::replace(resolved.begin(), resolved.end(), '\\', '/');
    const std::string module = Stage::ModuleDirectory().string();
    if (resolved.starts_with(module)) resolved.replace(0, module.size(), "<module>");
    EXPECT_EQ(resolved, expected);
}

TEST(Paths, AreCombinedAndResolved) {
    const std::tuple<const WideChar*, const WideChar*, WideString> rows[] = {
        {u"C:\\Data\\", u"a.txt", u"C:\\Data\\a.txt"},
        {u"/data//x", u"y\\\\z", u"/data/x\\y\\z"},
        {u"C:\\Data", u"logs\\", u"C:\\Data\\logs\\"},
        {u"C:\\Data\\", u"", u"C:\\Data\\"},
        {u"C:\\a\\b", u"..\\", u"C:\\a\\"},
        {u"C:\\a", u"..\\..\\..\\b", u"C:\\b"},
        {u"/a/./b", u"./c/.", u"/a/b\\c"},
        {u"/a", u"...\\.b", u"/a\\...\\.b"},
        {u"a", u"..\\..\\b", u"..\\b"},
        {u"a", u"..", u"."},
        {u"C:\\a", u"/b/../c", u"/c"},
        {u"C:\\a", u"D:b", u"D:b"},
        {u"\\\\server\\share", u"x", u"\\\\server\\share\\x"}};
    for (const auto& [base, rest, expected] : rows) {
        EXPECT_EQ(CombinePath(base, rest), expected);
    }
}

TEST(DataDirectory, ResolvesAPathBySettingsAndOverrides) {
    constexpr const char* nested = "\"Logs\"=\"D:\\\\Big\"\n\"/LOGS\\\\x/\"=\"F:\\\\Deep\\\\\"";
    // The directory setting, the values of the registry key, the path, and the resolved path. "/" is any separator.
    const std::tuple<Stage::Setting, std::string, const char*, const char*> rows[] = {
        {std::nullopt, "", "Logs/", "<module>/Logs/"},
        {"%ORV_BASE%", "", "%ORV_NAME%/x", "E:/Base/Logs/x"},
        {"sub", "", "a", "<module>/sub/a"},
        {"C:/Data", "", "D:x", "D:x"},
        {"", "", "/x", "/x"},
        {"C:/Data", nested, "logs/a/a.txt", "D:/Big/a/a.txt"},
        {"C:/Data", nested, "Logs", "D:/Big/"},
        {"C:/Data", nested, "Logs/X/y/z", "F:/Deep/y/z"},
        {"C:/Data", nested, "Logs2/x", "C:/Data/Logs2/x"},
        {"C:/Data", nested, "Logs/y/../z", "D:/Big/z"},
        {"C:/Data", R"("%ORV_NAME%"="%ORV_BASE%\\o")", "Logs/a", "E:/Base/o/a"},
        {"C:/Data", R"("Logs"="elsewhere")", "Logs/a", "C:/Data/elsewhere/a"},
        {"C:/Data", "@=\"Logs\"\n\"Logs\"=\"F:\\\\L\"", "a", "F:/L/a"}};
    const std::string registry = Stage::Root() / "data.reg";
    const ScopedVariable variables[] = {{"ORV_REGISTRY_FILE", registry}, {"ORV_BASE", "E:/Base"}, {"ORV_NAME", "Logs"}};
    for (const auto& [directory, overrides, path, resolved] : rows) {
        Stage::WriteText(registry, "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Orv]\n" + overrides);
        const ScopedVariable base("GS_General_DataDirectoryPath", directory),
            key("GS_General_DataDirectoryPathOverrideRegKey", overrides.empty() ? Stage::Setting() : "HKLM\\Orv");
        EXPECT_IN_CHILD(Resolve(path, resolved));
    }
}

}  // namespace
}  // namespace Harbor
