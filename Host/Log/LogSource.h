// The sources of a log's bytes.
#pragma once

#include <fstream>
#include <span>
#include <string>

namespace Host {

class LogSource {
public:
    virtual ~LogSource() = default;

    // Stores the next bytes. Returns their number, 0 at the end.
    [[nodiscard]] virtual std::size_t Read(std::span<char> buffer) = 0;
};

class StandardInputSource final : public LogSource {
public:
    std::size_t Read(std::span<char> buffer) override;
};

enum class IfMissing { Refuse, Wait };

// A file. After its end it can be read again: more may have been written.
class FileSource final : public LogSource {
public:
    // Throws BadInput if the file cannot be read. With IfMissing::Wait, such a file is taken as empty until it can.
    explicit FileSource(std::string path, IfMissing ifMissing = IfMissing::Refuse);

    std::size_t Read(std::span<char> buffer) override;

    // Continues at the end of what is there.
    void SkipToEnd();

    // Called at the end of the file. If it has appeared by now, or if it was emptied, moved or replaced, returns true,
    // and the next Read starts at the beginning of what has the file's name now.
    [[nodiscard]] bool SwitchToNewFile();

private:
    void LookAgain();

    const std::string path_;
    std::ifstream file_;
    std::uintmax_t read_ = 0;
};

}  // namespace Host
