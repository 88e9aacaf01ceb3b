#include "Host/Log/LogSource.h"

#include <filesystem>

#include "Host/Base/UserFile.h"
#include "Host/Console/StandardInput.h"

namespace Host {

std::size_t StandardInputSource::Read(std::span<char> buffer) {
    return ReadStandardInput(buffer);
}

FileSource::FileSource(std::string path, IfMissing ifMissing) : path_(std::move(path)) {
    if (ifMissing == IfMissing::Refuse) {
        file_ = OpenInputFile("FILE", path_);
    } else {
        file_.open(PathOf(path_), std::ios::binary);
    }
}

std::size_t FileSource::Read(std::span<char> buffer) {
    LookAgain();
    file_.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    const auto count = static_cast<std::size_t>(file_.gcount());
    read_ += count;
    return count;
}

void FileSource::SkipToEnd() {
    if (!file_.is_open()) return;
    file_.seekg(0, std::ios::end);
    read_ = static_cast<std::uintmax_t>(file_.tellg());
}

// Some C libraries remember the end of a file that has grown since. A seek makes them look again.
void FileSource::LookAgain() {
    file_.clear();
    file_.seekg(static_cast<std::streamoff>(read_));
}

bool FileSource::SwitchToNewFile() {
    std::error_code missing;
    const std::uintmax_t size = std::filesystem::file_size(PathOf(path_), missing);
    if (missing || size == read_) return false;
    // The size differs and nothing is left to read: the name is that of another file now, or this one was emptied.
    LookAgain();
    if (file_.peek() != std::ifstream::traits_type::eof()) return false;
    std::ifstream next(PathOf(path_), std::ios::binary);
    if (!next) return false;
    file_ = std::move(next);
    read_ = 0;
    return true;
}

}  // namespace Host
