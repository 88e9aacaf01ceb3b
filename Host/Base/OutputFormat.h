// The two formats of the host's output.
#pragma once

namespace Host {

enum class OutputFormat {
    Text,  // for people
    Json,  // one object a line
};

}  // namespace Host
