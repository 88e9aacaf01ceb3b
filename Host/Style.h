// How output is written.
#pragma once

namespace Host {

enum class Style {
    Text,  // for people
    Json,  // one object a line
};

}  // namespace Host
