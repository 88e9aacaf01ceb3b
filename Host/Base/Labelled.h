// A value with the text that it was given as.
#pragma once

#include <string>

namespace Host {

template <class T>
struct Labelled {
    std::string label;  // names the value in the host's output, such as "every 500ms"
    T value;
};

}  // namespace Host
