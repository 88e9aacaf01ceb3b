#include <gtest/gtest.h>

#include "Platform/Environment.h"
#include "TemporaryDirectory.h"

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

TEST_F(IniFiles, FindAKeyWhateverItsCaseAndTheBlanksAroundIt) {
    Write("outside=0\n\n  [ Logger ] \r\n\tMaxSeverity = ERR log \r\nPath=a=b\n");
    EXPECT_EQ(Read(u"LOGGER", u"maxseverity"), u"ERR log");
    EXPECT_EQ(Read(u"Logger", u"Path"), u"a=b");
    EXPECT_EQ(Read(u"Logger", u"outside"), u"(default)");
}

TEST_F(IniFiles, RemoveOnePairOfQuotesAndKeepWhatStandsWithin) {
    Write("[A]\na=\"  x \"\nb='y'\nc=\"\"z\"\"\nd=\"open\ne=\"mixed'\nf=\"\ng=\n");
    EXPECT_EQ(Read(u"A", u"a"), u"  x ");
    EXPECT_EQ(Read(u"A", u"b"), u"y");
    EXPECT_EQ(Read(u"A", u"c"), u"\"z\"");
    EXPECT_EQ(Read(u"A", u"d"), u"\"open");
    EXPECT_EQ(Read(u"A", u"e"), u"\"mixed'");
    EXPECT_EQ(Read(u"A", u"f"), u"\"");
    EXPECT_EQ(Read(u"A", u"g"), u"");
}

TEST_F(IniFiles, SkipCommentsAndLinesWithoutASign) {
    Write("[A]\n;x=1\n ; x=2\nx\nx=3;4\n;[B]\ny=5\n[broken\nz=6");
    EXPECT_EQ(Read(u"A", u"x"), u"3;4");
    EXPECT_EQ(Read(u"A", u"y"), u"5");
    EXPECT_EQ(Read(u"A", u"z"), u"6");
    EXPECT_EQ(Read(u"A", u";x"), u"(default)");
}

TEST_F(IniFiles, AreReadInBothEncodings) {
    Write("\xEF\xBB\xBF[A]\nx=\xE2\x82\xAC");
    EXPECT_EQ(Read(u"A", u"x"), u"\u20AC");
    Write(std::string("\xFF\xFE[\0A\0]\0\r\0\n\0x\0=\0\xAC\x20", 18));
    EXPECT_EQ(Read(u"A", u"x"), u"\u20AC");
}

}  // namespace
