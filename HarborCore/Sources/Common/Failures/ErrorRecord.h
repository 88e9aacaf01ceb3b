// A failure in words: the text that HRES::ToText gives and that travels in the thread's error object.
#pragma once

#include "Common/Base/HRes.h"

namespace Harbor {

// Marks the error objects whose description has the form of ErrorRecord::Text.
inline constexpr GUID OwnErrorGuid{0x64107A4E, 0x9383, 0x4398, {0x97, 0xFF, 0xEE, 0x55, 0xF0, 0xDA, 0x7F, 0xDF}};

struct ErrorRecord {
    std::uint32_t code = 0;
    WideString description;
    WideString details;  // code addresses of the failure and of earlier ones down the chain, oldest first

    // The words that the failure's error object carries, or else the text of its code; its own addresses come last.
    static ErrorRecord Of(const HRES& failure);

    // "0x80004005 Unspecified error [0x00007FF612340000,0x00007FF612350000]"
    WideString Text() const;
    // Reads that text back. False leaves the record as it was.
    bool Parse(std::u16string_view text);
};

}  // namespace Harbor
