// A message module: its texts are the same in either encoding, and a text that is written as a line of a module is read
// back unchanged.
#include <optional>

#include "Fuzzing.h"
#include "Platform/Messages.h"
#include "Platform/Modules.h"

using namespace Fuzzing;
using namespace Platform;

namespace {

constexpr DWORD Codes[] = {0, 1, 5, 0x80040201, 0xFFFFFFFF};
constexpr DWORD Languages[] = {0, 0x0407, 0x0409};

// The module's text for each code in each language, or nothing if the file is not a module.
std::optional<WideString> Texts(std::string_view bytes) {
    const MemoryFile file(bytes);
    const HMODULE module =
        LoadLibraryExW(file.WidePath().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
    if (module == nullptr) return std::nullopt;
    WideString texts;
    for (const DWORD code : Codes) {
        for (const DWORD language : Languages) {
            WideChar* buffer = nullptr;
            const DWORD length = FormatMessageW(
                FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_HMODULE, module,
                code, language, reinterpret_cast<WideChar*>(&buffer), 0, nullptr);
            REQUIRE((length == 0) == (buffer == nullptr));
            if (length == 0) continue;
            REQUIRE(buffer[length] == u'\0');
            texts.append(buffer, length);
            LocalFree(buffer);
        }
    }
    REQUIRE(FreeLibrary(module) && !FreeLibrary(module));
    return texts;
}

WideString Escaped(std::u16string_view text) {
    WideString result;
    for (const char16_t c : text) {
        if (c == u'\\')
            result += u"\\\\";
        else if (c == u'\n')
            result += u"\\n";
        else if (c == u'\t')
            result += u"\\t";
        else if (c != u'\r')
            result += c;
    }
    return result;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Texts(AsBytes(data, size));
    const WideString text = Harbor::FromUtf8(AsBytes(data, size));
    REQUIRE(Texts(Utf8File(text)) == Texts(Utf16File(text)));

    WideString expected(text);
    std::erase(expected, u'\r');
    if (expected.empty()) return 0;
    REQUIRE(Texts(Utf16File(u"0x80040201\t0x0409\t" + Escaped(text))) == expected + expected);
    return 0;
}
