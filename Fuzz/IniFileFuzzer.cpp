// An INI file, after two lines with the section and the key to read: a value depends neither on the encoding of the
// file nor, apart from being cut, on the size of the buffer, and a value in quotes is read as it was written.
#include "Fuzzing.h"
#include "Platform/Environment.h"

using namespace Fuzzing;
using Harbor::WideString;

namespace {

WideString Ask(std::string_view bytes, const WideString& section, const WideString& key, std::size_t room) {
    const MemoryFile file(bytes);
    WideString value(room, u'#');
    const auto length = Platform::GetPrivateProfileStringW(section.c_str(), key.c_str(), u"default", value.data(),
                                                           static_cast<Platform::DWORD>(room), file.WidePath().c_str());
    REQUIRE(length < room && value[length] == u'\0');
    value.resize(length);
    return value;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const WideString input = Harbor::FromUtf8(AsBytes(data, size));
    std::u16string_view text = input;
    const WideString section = TakeLine(text);
    const WideString key = TakeLine(text);
    const std::size_t room = size + 16;

    const WideString value = Ask(Utf8File(text), section, key, room);
    REQUIRE(Ask(Utf16File(text), section, key, room) == value);
    for (const std::size_t small : {1u, 2u, 5u}) {
        REQUIRE(Ask(Utf8File(text), section, key, small) == value.substr(0, small - 1));
    }
    Ask(AsBytes(data, size), section, key, room);

    const WideString line = WithoutLineEnds(text);
    REQUIRE(Ask(Utf16File(u"[s]\r\nk=\"" + line + u"\"\r\n"), u"S", u"K", room) == line);
    return 0;
}
