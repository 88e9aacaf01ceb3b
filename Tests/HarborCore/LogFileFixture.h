// A log file in a directory of its own, and what the tests do with it.
#pragma once

#include <cstring>
#include <fstream>

#include "Common/Logging/FileLogger.h"
#include "Stage.h"

namespace Harbor {

namespace fs = std::filesystem;
using Stage::PassLogInterval;

// The text of a log file: 16-bit, little-endian.
inline std::string ReadLog(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    EXPECT_EQ(bytes.size() % 2, 0u);
    WideString text(bytes.size() / 2, u'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * 2);
    return ToUtf8(text);
}

class LogFile : public testing::Test {
protected:
    LogFile() {
        fs::create_directories(directory_);
        PassLogInterval();
    }
    ~LogFile() override {
        EXPECT_EQ(Stage::TakeDebugOutput(), Stage::Strings());
        fs::remove_all(directory_);
        Stage::OnSleep = [] {};
        PassLogInterval();
    }
    static void Write(FileLogger& logger, const WideChar* text) { logger.Write(text, -1); }
    FileLogger Logger() const { return FileLogger(Stage::Wide(file_), u"B"); }
    std::string CannotOpen(const char* code) const {
        return "FileLogger: cannot open log file '" + file_.string() + "' (error: " + code + ")\n";
    }

    // Writes a line. The file is released before the given try to open it.
    template <class Release>
    void ExpectTries(int releasedAt, Release release) {
        int sleeps = 0;
        Stage::OnSleep = [&] {
            if (++sleeps == releasedAt) release();
        };
        FileLogger logger = Logger();
        Write(logger, u"1");
        EXPECT_EQ(sleeps, std::min(releasedAt, 4));
    }

    // Writes three lines, acts after the first one, and lets the log's interval pass after the second one. Expects the
    // given text in the file at its path and in the other file, and that further lines follow it.
    void ExpectContentsAfter(const char* what, const std::function<void()>& act, const std::string& content,
                             const std::string& otherContent) const {
        SCOPED_TRACE(what);
        FileLogger logger = Logger(), second = Logger();
        EXPECT_FALSE(fs::exists(file_)) << "the first line opens the file";
        Write(logger, u"1");
        act();
        Write(logger, u"2");
        PassLogInterval();
        Write(logger, u"3");
        EXPECT_EQ(ReadLog(file_), content);
        EXPECT_EQ(ReadLog(other_), otherContent);
        PassLogInterval();
        Write(logger, u"4");
        second.Write(u"5\r\nmore", 3);
        EXPECT_EQ(ReadLog(file_), content + "4B5\r\n");
        fs::remove(file_);
        fs::remove(other_);
    }

    const fs::path directory_ = Stage::Root() / "logs";
    const fs::path file_ = directory_ / "test.log", other_ = directory_ / "other";
};

}  // namespace Harbor
