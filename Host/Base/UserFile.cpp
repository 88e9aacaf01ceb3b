#include "Host/Base/UserFile.h"

#include <cerrno>
#include <system_error>

#include "Host/Base/Failure.h"

namespace Host {
namespace {

// Says that the system refused to do something with the file, and why: the last error is in errno.
std::string Refused(std::string_view source, const std::string& path, std::string_view what) {
    return std::string(source) + ": \"" + path + "\" cannot be " + std::string(what) + ": " +
           std::generic_category().message(errno);
}

}  // namespace

std::ifstream OpenInputFile(std::string_view source, const std::string& path) {
    errno = 0;
    std::ifstream file(PathOf(path), std::ios::binary);
    // A directory can be opened; reading it fails.
    if (file) file.peek();
    if (file || file.eof()) {
        file.clear();
        return file;
    }
    throw BadInput(Refused(source, path, "read"));
}

void WriteOutputFile(std::string_view source, const std::string& path, const std::string& content) {
    errno = 0;
    std::ofstream file(PathOf(path), std::ios::binary);
    file << content;
    file.close();
    if (!file) throw std::runtime_error(Refused(source, path, "written"));
}

}  // namespace Host
