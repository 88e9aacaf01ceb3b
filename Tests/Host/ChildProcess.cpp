#include "ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace {

void CloseOnce(int& descriptor) {
    if (descriptor >= 0) close(descriptor);
    descriptor = -1;
}

std::string ReadWhole(int file) {
    std::string text(static_cast<std::size_t>(lseek(file, 0, SEEK_END)), '\0');
    EXPECT_EQ(pread(file, text.data(), text.size(), 0), std::ssize(text));
    return text;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments) {
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    errors_ = memfd_create("errors", MFD_CLOEXEC);
    EXPECT_EQ(pipe2(in.data(), O_CLOEXEC) | pipe2(out.data(), O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors_, STDERR_FILENO);
    std::vector<char*> argv{const_cast<char*>(HOST_PROGRAM)};
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    EXPECT_EQ(posix_spawn(&process_, HOST_PROGRAM, &actions, nullptr, argv.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    input_ = in[1];
    output_ = out[0];
}

ChildProcess::~ChildProcess() {
    if (process_ > 0) {
        Signal(SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    CloseInput();
    CloseOutput();
    CloseOnce(errors_);
}

void ChildProcess::Type(const std::string& text) {
    EXPECT_EQ(write(input_, text.data(), text.size()), std::ssize(text));
}

void ChildProcess::CloseInput() {
    CloseOnce(input_);
}

void ChildProcess::CloseOutput() {
    CloseOnce(output_);
}

void ChildProcess::Signal(int number) {
    EXPECT_EQ(kill(process_, number), 0);
}

std::vector<std::string> ChildProcess::ReadUntil(const std::string& text) {
    std::vector<std::string> lines;
    for (std::string line;;) {
        if (TakeLine(line)) {
            lines.push_back(line);
            if (line.find(text) != line.npos) return lines;
        } else if (!ReadMore()) {
            return lines;
        }
    }
}

ChildProcess::Result ChildProcess::Finish() {
    CloseInput();
    while (ReadMore()) {
    }
    int status = 0;
    EXPECT_EQ(waitpid(std::exchange(process_, -1), &status, 0) > 0, true);
    Result result{WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), {}, ReadWhole(errors_)};
    for (std::string line; TakeLine(line);) result.lines.push_back(line);
    EXPECT_EQ(pending_, "") << "output ends inside a line";
    return result;
}

bool ChildProcess::ReadMore() {
    std::array<char, 4096> block;
    const ssize_t count = output_ >= 0 ? read(output_, block.data(), block.size()) : 0;
    if (count <= 0) return false;
    pending_.append(block.data(), static_cast<std::size_t>(count));
    return true;
}

bool ChildProcess::TakeLine(std::string& line) {
    const std::size_t end = pending_.find('\n');
    if (end == pending_.npos) return false;
    line = pending_.substr(0, end);
    pending_.erase(0, end + 1);
    return true;
}

ChildProcess::Result RunHost(const std::vector<std::string>& arguments) {
    return ChildProcess(arguments).Finish();
}
