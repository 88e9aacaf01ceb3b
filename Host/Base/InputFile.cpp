#include "Host/Base/InputFile.h"

#include <cerrno>
#include <system_error>

#include "Host/Base/Failure.h"

namespace Host {

std::ifstream OpenInputFile(std::string_view source, const std::string& path) {
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    // A directory can be opened; reading it fails.
    if (file) file.peek();
    if (file || file.eof()) {
        file.clear();
        return file;
    }
    std::string text(source);
    text.append(": \"").append(path).append("\" cannot be read: ").append(std::generic_category().message(errno));
    throw BadInput(text);
}

}  // namespace Host
