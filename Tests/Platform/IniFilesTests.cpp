#include <gtest/gtest.h>

#include "Platform/Environment.h"
#include "Support/TemporaryDirectory.h"

namespace {

using namespace Platform;

class IniFiles : public ::testing::Test {
protected:
    void Write(const std::string& bytes) const { WriteAll(file_, bytes); }
    WideString Read(const WideChar* section, const WideChar* key, DWORD size = 260) const {
        WideString buffer(size, u'#');
        const DWORD length =
            GetPrivateProfileStringW(section, key, u"(default)", buffer.data(), size, file_.u16string().c_str());
        EXPECT_EQ(buffer[length], u'\0');
        return buffer.substr(0, length);
    }

private:
    const TemporaryDirectory directory_;
    const std::filesystem::path file_ = directory_ / "Settings.ini";
};

TEST_F(IniFiles, GiveTheValueOfAKeyByTheirRules) {
    Write(
        "outside=0\n\n  [ Logger ] \r\n\tMaxSeverity = ERR log \r\nPath=a=b\n;x=1\n ; "
        "x=2\nx\nx=3;4\nx=5\n;[B]\n[broken\n"
        "a=\"  x \"\nb='y'\nc=\"\"z\"\"\nd=\"open\ne=\"mixed'\nf=\"\ng=\n[B]\nlast=6\n[Logger]\nlast=7");
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
    for (const auto& [key, value] : rows) EXPECT_EQ(Read(u"LOGGER", key), value);
    EXPECT_EQ(Read(u"b", u"LAST"), u"6");
}

TEST_F(IniFiles, AreReadInBothEncodings) {
    Write("\xEF\xBB\xBF[A]\nx=\xE2\x82\xAC");
    EXPECT_EQ(Read(u"A", u"x"), u"\u20AC");
    Write(std::string("\xFF\xFE[\0A\0]\0\r\0\n\0x\0=\0\xAC\x20", 18));
    EXPECT_EQ(Read(u"A", u"x"), u"\u20AC");
}

}  // namespace
