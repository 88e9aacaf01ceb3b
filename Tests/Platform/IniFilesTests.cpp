#include <gtest/gtest.h>

#include "Platform/Environment.h"
#include "Support/TemporaryDirectory.h"

namespace {

using namespace Platform;

TEST(IniFiles, AreReadWithQuotesCommentsAndCaseInsensitiveNames) {
    const TemporaryDirectory directory;
    const std::filesystem::path file = directory / "Settings.ini";
    WriteAll(file,
             "outside=0\n\n  [ Logger ] \r\n\tMaxSeverity = ERR log \r\nPath=a=b\n;x=1\n ; "
             "x=2\nx\nx=3;4\nx=5\n;[B]\n[broken\n"
             "a=\"  x \"\nb='y'\nc=\"\"z\"\"\nd=\"open\ne=\"mixed'\nf=\"\ng=\n[B]\nlast=6\n[Logger]\nlast=7");
    const auto read = [&](const WideChar* section, const WideChar* key) {
        WideChar buffer[20];
        const DWORD length = GetPrivateProfileStringW(section, key, u"(default)", buffer, 20, file.u16string().c_str());
        return WideString(buffer, length);
    };
    const std::pair<const WideChar*, WideString> rows[] = {{u"maxseverity", u"ERR log"},
                                                           {u"Path", u"a=b"},
                                                           {u"outside", u"(default)"},
                                                           {u"x", u"3;4"},
                                                           {u";x", u"(default)"},
                                                           {u"a", u"  x "},
                                                           {u"b", u"y"},
                                                           {u"c", u"\"z\""},
                                                           {u"d", u"\"open"},
                                                           {u"e", u"\"mixed'"},
                                                           {u"f", u"\""},
                                                           {u"g", u""},
                                                           {u"last", u"(default)"}};
    for (const auto& [key, value] : rows) EXPECT_EQ(read(u"LOGGER", key), value);
    EXPECT_EQ(read(u"b", u"LAST"), u"6");
}

}  // namespace
