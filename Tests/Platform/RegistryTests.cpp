#include "Platform/Registry.h"

#include <gtest/gtest.h>

#include <vector>

#include "Platform/Errors.h"
#include "ScopedVariable.h"
#include "TemporaryDirectory.h"

namespace {

using namespace Platform;

constexpr DWORD Success = ERROR_SUCCESS;

class Registry : public ::testing::Test {
protected:
    ~Registry() override {
        if (key_ != nullptr) RegCloseKey(key_);
    }
    void Write(const std::string& body) const { WriteAll(file_, body); }
    DWORD Open(const WideChar* path, HKEY root = HKEY_LOCAL_MACHINE) {
        if (key_ != nullptr) RegCloseKey(key_);
        return static_cast<DWORD>(RegOpenKeyExW(root, path, 0, KEY_READ, &key_));
    }
    DWORD Name(DWORD index, WideChar* name, DWORD& length) const {
        return static_cast<DWORD>(RegEnumValueW(key_, index, name, &length, nullptr, nullptr, nullptr, nullptr));
    }
    DWORD Query(const WideChar* name, std::uint8_t* data, DWORD& size, DWORD* type = nullptr) const {
        return static_cast<DWORD>(RegQueryValueExW(key_, name, nullptr, type, data, &size));
    }
    // Every value of the open key as "name:type=bytes" in hexadecimal.
    std::vector<std::string> Values() const {
        std::vector<std::string> values;
        WideChar name[64];
        for (DWORD length = 64; Name(static_cast<DWORD>(values.size()), name, length) == Success; length = 64) {
            std::uint8_t data[64];
            DWORD size = sizeof data, type = 0;
            EXPECT_EQ(Query(name, data, size, &type), Success);
            std::string value(name, name + length);
            value.append(":").append(std::to_string(type)).append("=");
            for (DWORD i = 0; i < size; ++i)
                value += {"0123456789abcdef"[data[i] >> 4], "0123456789abcdef"[data[i] & 15]};
            values.push_back(value);
        }
        return values;
    }
    using List = std::vector<std::string>;

    const TemporaryDirectory directory_;
    const std::filesystem::path file_ = directory_ / "Registry.reg";
    const ScopedVariable variable_{"ORV_REGISTRY_FILE", file_.string()};
    HKEY key_ = nullptr;
};

TEST_F(Registry, ReadsEveryKindOfValueInTheOrderOfTheFile) {
    Write(
        "\"outside\"=\"1\"\r\n[HKEY_CURRENT_USER\\A\\K]\r\n\"a\\\"\\\\\"=\"\\\\\xE2\x82\xAC\"\r\n@ = "
        "\"\"\r\n\"n\"=dword:c0FFee\r\n"
        "\"t\"=hex(2):25,00,\\\r\n  41,00,00,00\r\n\"b\"=hex:01,ff\r\n\"q\"=hex(b):07\r\n\"open\"=hex(1):41,00\r\n");
    ASSERT_EQ(Open(u"a\\k\\", HKEY_CURRENT_USER), Success);
    EXPECT_EQ(Values(), (List{"a\"\\:1=5c00ac200000", ":1=0000", "n:4=eeffc000", "t:2=250041000000", "b:3=01ff",
                              "q:11=07", "open:1=41000000"}));
    Write("REGEDIT4\n[HKEY_LOCAL_MACHINE\\K]\n\"t\"=hex(2):41,00\n");
    ASSERT_EQ(Open(u"K"), Success);
    EXPECT_EQ(Values(), List{"t:2=41000000"});
    const std::u16string wide = u"\uFEFF[HKEY_LOCAL_MACHINE\\K]\r\n\"t\"=\"\u20AC\"\r\n";
    Write(std::string(reinterpret_cast<const char*>(wide.data()), wide.size() * 2));
    ASSERT_EQ(Open(u"K"), Success);
    EXPECT_EQ(Values(), List{"t:1=ac200000"});
}

TEST_F(Registry, SkipsWhatIsMalformedOrDeletedAndJoinsSectionsOfOneKey) {
    Write(
        "[HKEY_LOCAL_MACHINE\\S\\K]\n;\"a\"=\"comment\\\n\"a\"=\"1\"\n\"b\"=\"open\n\"c\"=dword:xyz\n\"d\"=hex:100\n"
        "\"e\"=hex(:01\n\"f\"=\"x\"y\n\"g\"=\"C:\\n\"\n\"h\"=-\nnonsense\n\"z\"=dword:2\n[-HKEY_LOCAL_MACHINE\\S\\K]\n"
        "\"late\"=\"3\"\n[HKEY_LOCAL_MACHINE\\Gone\n[HKEY_LOCAL_MACHINE\\S\\K2]\n\"x\"=dword:9\n"
        "[hkey_local_machine\\s\\k]\n\"A\"=dword:4\n");
    ASSERT_EQ(Open(u"S\\K"), Success);
    EXPECT_EQ(Values(), (List{"A:4=04000000", "z:4=02000000"}));
    EXPECT_EQ(Open(u"S"), Success);
    EXPECT_EQ(Open(u"Gone"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Open(u"S\\Kx"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Open(u"S\\K", HKEY_CURRENT_USER), ERROR_FILE_NOT_FOUND);
}

}  // namespace
