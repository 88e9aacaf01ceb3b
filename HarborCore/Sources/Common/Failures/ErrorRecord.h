// The text of a failure, which HRES::ToText returns and which crosses component boundaries in the thread's error
// object.
#pragma once

#include "Common/Base/HRes.h"

namespace Harbor {

// Identifies error objects whose description has the form of ErrorRecord::Text.
inline constexpr GUID OwnErrorGuid{0x64107A4E, 0x9383, 0x4398, {0x97, 0xFF, 0xEE, 0x55, 0xF0, 0xDA, 0x7F, 0xDF}};

struct ErrorRecord {
    std::uint32_t code = 0;
    WideString description;
    WideString details;  // code addresses of the failure and of the failures that caused it, oldest first

    // Returns the record of a failure: the description of its error object, or the text of its code if there is none,
    // and the code addresses of the error object followed by those of the failure.
    static ErrorRecord Of(const HRES& failure);

    // Returns a text such as "0x80004005 Unspecified error [0x00007FF612340000,0x00007FF612350000]".
    WideString Text() const;
    // Reads such a text into this record. Returns false, and changes nothing, if the text does not begin with a number.
    bool Parse(std::u16string_view text);
};

}  // namespace Harbor
