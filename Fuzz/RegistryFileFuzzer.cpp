// A registry file: the values of a key are the same in either encoding, names are unique, texts end in their
// terminator, and values that are written again are read back unchanged.
#include <set>
#include <vector>

#include "Fuzzing.h"
#include "Platform/Errors.h"
#include "Platform/Registry.h"

using namespace Fuzzing;
using namespace Platform;

namespace {

struct Value {
    WideString name;
    DWORD type;
    std::vector<std::uint8_t> data;

    bool operator==(const Value&) const = default;
};

Value ReadValue(HKEY key, WideString name) {
    Value value{std::move(name), 0, {}};
    DWORD size = 0;
    REQUIRE(RegQueryValueExW(key, value.name.c_str(), nullptr, &value.type, nullptr, &size) == 0);
    value.data.resize(size);
    REQUIRE(RegQueryValueExW(key, value.name.c_str(), nullptr, nullptr, value.data.data(), &size) == 0);
    if (value.type == REG_SZ || value.type == REG_EXPAND_SZ) {
        REQUIRE(size >= 2 && size % 2 == 0 && value.data[size - 1] == 0 && value.data[size - 2] == 0);
    }
    return value;
}

std::vector<Value> ReadKey(std::string_view bytes) {
    const MemoryFile file(bytes);
    setenv("ORV_REGISTRY_FILE", file.Path().c_str(), 1);
    std::vector<Value> values;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"Software\\Key", 0, KEY_READ, &key) != 0) return values;
    WideString name(bytes.size() + 1, u'\0');
    std::set<WideString> names;
    for (DWORD index = 0;; ++index) {
        auto length = static_cast<DWORD>(name.size());
        const LONG code = RegEnumValueW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (code == static_cast<LONG>(ERROR_NO_MORE_ITEMS)) break;
        REQUIRE(code == 0);
        const WideString found = name.substr(0, length);
        REQUIRE(names.insert(found).second);
        // To the functions a name ends at its first 0 character.
        if (found.find(u'\0') == found.npos) values.push_back(ReadValue(key, found));
    }
    RegCloseKey(key);
    return values;
}

WideString Written(const Value& value) {
    WideString line = u"\"";
    for (const char16_t c : value.name) {
        if (c == u'\\' || c == u'"') line += u'\\';
        line += c;
    }
    char number[16];
    std::snprintf(number, sizeof number, "\"=hex(%x):", value.type);
    line += Harbor::FromUtf8(number);
    for (const std::uint8_t byte : value.data) {
        std::snprintf(number, sizeof number, "%02x,\\\r\n", byte);
        line += Harbor::FromUtf8(number);
    }
    return line + u"\r\n";
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ReadKey(AsBytes(data, size));
    const WideString text = Harbor::FromUtf8(AsBytes(data, size));
    const std::vector<Value> values = ReadKey(Utf8File(text));
    REQUIRE(ReadKey(Utf16File(text)) == values);

    WideString written = u"Windows Registry Editor Version 5.00\r\n[hkey_local_machine\\SOFTWARE\\KEY]\r\n";
    for (const Value& value : values) written += Written(value);
    REQUIRE(ReadKey(Utf16File(written)) == values);
    return 0;
}
