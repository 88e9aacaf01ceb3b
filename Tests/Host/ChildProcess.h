// The host as its users meet it: a process with a command line, three streams and an exit code.
#pragma once

#include <gmock/gmock.h>
#include <sys/types.h>

#include <string>
#include <vector>

class ChildProcess {
public:
    // The two descriptors that a child process gets besides its standard error are pipes to this test.
    explicit ChildProcess(const std::vector<std::string>& arguments);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    void Type(const std::string& text);
    void CloseInput();
    void CloseOutput();
    void Signal(int number);

    // The lines that come until one contains the text, that one included; until the end if none does.
    std::vector<std::string> ReadUntil(const std::string& text);

    struct Result {
        int code;                        // the exit code, or minus the signal that ended the process
        std::vector<std::string> lines;  // of standard output, as far as they weren't read before
        std::string errors;
    };
    // Closes the input and waits for the end.
    Result Finish();

private:
    bool ReadMore();
    bool TakeLine(std::string& line);

    int input_ = -1;
    int output_ = -1;
    int errors_ = -1;  // a file without a name, since nobody reads it while the process runs
    pid_t process_ = -1;
    std::string pending_;
};

// Runs the host without input.
ChildProcess::Result RunHost(const std::vector<std::string>& arguments);
