// Where the bytes of a log come from.
#pragma once

#include <fstream>
#include <span>
#include <string>

namespace Host {

class LogSource {
public:
    virtual ~LogSource() = default;

    // The next bytes: how many were stored, 0 at the end.
    [[nodiscard]] virtual std::size_t Read(std::span<char> buffer) = 0;
};

class StandardInputSource final : public LogSource {
public:
    std::size_t Read(std::span<char> buffer) override;
};

// A file. At its end it can be asked again: more may have been written.
class FileSource final : public LogSource {
public:
    // Throws BadInput if the file can't be read.
    explicit FileSource(std::string path);

    std::size_t Read(std::span<char> buffer) override;

    // To be asked at the end: whether the name stands for something else by now, since the file was emptied, moved or
    // replaced. If so, the next Read begins with that.
    [[nodiscard]] bool TurnToNewFile();

private:
    const std::string path_;
    std::ifstream file_;
    std::uintmax_t read_ = 0;
};

}  // namespace Host
