#include "Common/Settings/DataDirectory.h"
#include "Common/Settings/Paths.h"
#include "Stage.h"

namespace Harbor {
namespace {

TEST(Paths, AreTakenApartAndPutTogether) {
    for (const auto* const relative : {u"", u"a", u"a/b:", u"..\\a"}) EXPECT_TRUE(IsRelativePath(relative));
    for (const auto* const absolute : {u"\\", u"/a", u"C:", u"C:x", u"\\\\s\\d"})
        EXPECT_FALSE(IsRelativePath(absolute));

    const std::pair<const WideChar*, std::vector<WideString>> splits[] = {
        {u"", {}}, {u"\\/\\", {}}, {u"a\\\\b/", {u"a", u"b"}}, {u"/a/..\\b c", {u"a", u"..", u"b c"}}};
    for (const auto& [path, elements] : splits) EXPECT_EQ(SplitPath(path), elements) << ToUtf8(path);

    const WideString longName(400, u'n');
    const WideString joins[][3] = {{u"C:\\a", u"b\\c", u"C:\\a\\b\\c"}, {u"C:\\a\\", u"b", u"C:\\a\\b"},
                                   {u"C:\\a", u"", u"C:\\a"},           {u"C:\\a\\b", u"..\\.\\c", u"C:\\a\\c"},
                                   {u"C:\\a", u"D:\\b", u"D:\\b"},      {u"/a/", longName, u"/a/" + longName}};
    for (const auto& [base, rest, joined] : joins) EXPECT_EQ(CombinePath(base, rest), joined) << ToUtf8(rest);
}

TEST(Paths, AreMadeWithAllTheirParents) {
    const WideString root = Stage::Wide(Stage::Root());
    for (int again = 0; again < 2; ++again) CreateDirectoryPath(root + u"\\made//one\\two/", nullptr, false);
    EXPECT_TRUE(std::filesystem::is_directory(Stage::Root() / "made/one/two"));
    Stage::WriteText(Stage::Root() / "file", "");
    const auto make = [&](bool ignoreErrors) { CreateDirectoryPath(root + u"/file/below", nullptr, ignoreErrors); };
    EXPECT_EQ(Stage::CodeThrownBy([&] { return make(true), 0; }), S_OK);
    EXPECT_EQ(Stage::CodeThrownBy([&] { return make(false), 0; }), HResultFromWin32(3));
}

struct DataPath {
    const char *directory, *overrides;  // the setting, null if there is none, and the values of the registry key
    const char *path, *resolved;        // "<module>" is the module's directory, "/" any separator
};

constexpr char Nested[] = "\"Logs\"=\"D:\\\\Big\"\n\"/LOGS\\\\x/\"=\"F:\\\\Deep\\\\\"";

constexpr DataPath DataPaths[] = {{nullptr, "", "Logs/", "<module>/Logs/"},
                                  {"", "", "", "<module>/"},
                                  {"%ORV_BASE%", "", "%ORV_NAME%/x", "E:/Base/Logs/x"},
                                  {"sub", "", "a", "<module>/sub/a"},
                                  {"C:/Data", "", "D:x", "D:x"},
                                  {"C:/Data", Nested, "logs/a/a.txt", "D:/Big/a/a.txt"},
                                  {"C:/Data", Nested, "Logs", "D:/Big/"},
                                  {"C:/Data", Nested, "Logs/X/y/z", "F:/Deep/y/z"},
                                  {"C:/Data", Nested, "Other/Logs", "C:/Data/Other/Logs"},
                                  {"C:/Data", Nested, "Logs2/x", "C:/Data/Logs2/x"},
                                  {"C:/Data", Nested, "Logs/y/../z", "D:/Big/z"},
                                  {"C:/Data", Nested, "y/../Logs", "C:/Data/y/../Logs"},
                                  {"C:/Data", R"("%ORV_NAME%"="%ORV_BASE%\\o")", "Logs/a", "E:/Base/o/a"},
                                  {"C:/Data", R"("Logs"="elsewhere")", "Logs/a", "C:/Data/elsewhere/a"},
                                  {"C:/Data", R"(@="D:\\All")", "a", "D:/All/a"},
                                  {"C:/Data", R"("//"="more")", "a", "C:/Datamore/a"},
                                  {"C:/Data", "@=\"Logs\"\n\"Logs\"=\"F:\\\\L\"", "a", "F:/L/a"}};

class DataDirectoryTest : public testing::TestWithParam<DataPath> {};

void Resolve(const DataPath& row) {
    std::string resolved = ToUtf8(ResolveDataPath(FromUtf8(row.path)));
    std::replace(resolved.begin(), resolved.end(), '\\', '/');
    const std::string module = Stage::ModuleDirectory().string();
    if (resolved.starts_with(module)) resolved.replace(0, module.size(), "<module>");
    EXPECT_EQ(resolved, row.resolved);
}

TEST_P(DataDirectoryTest, SendsAPathWhereSettingsAndOverridesSay) {
    const auto& [directory, overrides, path, resolved] = GetParam();
    Stage::WriteText(Stage::Root() / "data.reg", std::string("REGEDIT4\n[HKEY_LOCAL_MACHINE\\Orv]\n") + overrides);
    const Stage::Variable variables[] = {
        {"ORV_REGISTRY_FILE", (Stage::Root() / "data.reg").string()},
        {"ORV_BASE", "E:/Base"},
        {"ORV_NAME", "Logs"},
        {"GS_General_DataDirectoryPath", directory == nullptr ? Stage::Setting() : directory},
        {"GS_General_DataDirectoryPathOverrideRegKey", *overrides == 0 ? Stage::Setting() : "HKLM\\Orv"}};
    EXPECT_IN_CHILD(Resolve(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Settings, DataDirectoryTest, testing::ValuesIn(DataPaths));

}  // namespace
}  // namespace Harbor
