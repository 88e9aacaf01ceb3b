#include "Platform/Registry.h"

#include <gtest/gtest.h>

#include <vector>

#include "Platform/Errors.h"
#include "Support/ScopedVariable.h"
#include "Support/TemporaryDirectory.h"

namespace {

using namespace Platform;

using Texts = std::vector<std::string>;

class Registry : public ::testing::Test {
protected:
    void Write(const std::string& body) const { WriteAll(file_, body); }

    // Returns every value of the key as "name:type=bytes" in hexadecimal, or one empty text if there is no such key.
    static Texts ValuesOf(const WideChar* path, HKEY root = HKEY_LOCAL_MACHINE) {
        HKEY key = nullptr;
        if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) != 0) return {""};
        Texts values;
        WideChar name[64];
        for (DWORD length = 64, index = 0;
             RegEnumValueW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) == 0; length = 64, ++index) {
            std::uint8_t data[64];
            DWORD size = sizeof data, type = 0;
            EXPECT_EQ(RegQueryValueExW(key, name, nullptr, &type, data, &size), 0);
            std::string& value = values.emplace_back(name, name + length);
            value.append(":").append(std::to_string(type)).append("=");
            for (DWORD i = 0; i < size; ++i)
                value += {"0123456789abcdef"[data[i] >> 4], "0123456789abcdef"[data[i] & 15]};
        }
        RegCloseKey(key);
        return values;
    }

private:
    const TemporaryDirectory directory_;
    const std::filesystem::path file_ = directory_ / "Registry.reg";
    const ScopedVariable variable_{"ORV_REGISTRY_FILE", file_.string()};
};

TEST_F(Registry, ReadsEveryKindOfValueInTheOrderOfTheFile) {
    Write(
        "\"outside\"=\"1\"\r\n[HKEY_CURRENT_USER\\A\\K]\r\n\"a\\\"\\\\\"=\"\\\\\xE2\x82\xAC\"\r\n@ = "
        "\"\"\r\n\"n\"=dword:c0FFee\r\n"
        "\"t\"=hex(2):25,00,\\\r\n  41,00,00,00\r\n\"b\"=hex:01,ff\r\n\"q\"=hex(b):07\r\n\"open\"=hex(1):41,00\r\n");
    EXPECT_EQ(ValuesOf(u"a\\k\\", HKEY_CURRENT_USER),
              (Texts{"a\"\\:1=5c00ac200000", ":1=0000", "n:4=eeffc000", "t:2=250041000000", "b:3=01ff", "q:11=07",
                     "open:1=41000000"}));
    Write("REGEDIT4\n[HKEY_LOCAL_MACHINE\\K]\n\"t\"=hex(2):41,00\n");
    EXPECT_EQ(ValuesOf(u"K"), Texts{"t:2=41000000"});
    const std::u16string wide = u"\uFEFF[HKEY_LOCAL_MACHINE\\K]\r\n\"t\"=\"\u20AC\"\r\n";
    Write(std::string(reinterpret_cast<const char*>(wide.data()), wide.size() * 2));
    EXPECT_EQ(ValuesOf(u"K"), Texts{"t:1=ac200000"});
}

TEST_F(Registry, SkipsMalformedAndDeletedValuesAndMergesSectionsOfOneKey) {
    Write(
        "[HKEY_LOCAL_MACHINE\\S\\K]\n;\"a\"=\"comment\\\n\"a\"=\"1\"\n\"b\"=\"open\n\"c\"=dword:xyz\n\"d\"=hex:100\n"
        "\"e\"=hex(:01\n\"f\"=\"x\"y\n\"g\"=\"C:\\n\"\n\"h\"=-\nnonsense\n\"z\"=dword:2\n[-HKEY_LOCAL_MACHINE\\S\\K]\n"
        "\"late\"=\"3\"\n[HKEY_LOCAL_MACHINE\\Gone\n[HKEY_LOCAL_MACHINE\\S\\K2]\n\"x\"=dword:9\n"
        "[hkey_local_machine\\s\\k]\n\"A\"=dword:4\n");
    EXPECT_EQ(ValuesOf(u"S\\K"), (Texts{"A:4=04000000", "z:4=02000000"}));
    EXPECT_EQ(ValuesOf(u"S"), Texts{});
    for (const WideChar* const missing : {u"Gone", u"S\\Kx"}) EXPECT_EQ(ValuesOf(missing), Texts{""});
    EXPECT_EQ(ValuesOf(u"S\\K", HKEY_CURRENT_USER), Texts{""});
}

}  // namespace
