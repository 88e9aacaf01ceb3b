// What the tests share: sleeps that take no time, a debugger's output that can be read, the lines of the log, places in
// the file system, and processes that start anew.
#pragma once

#include <gmock/gmock.h>

#include <functional>

#include "Common/Base/HRes.h"
#include "Common/Base/Text.h"
#include "Support/LogLines.h"
#include "Support/TemporaryDirectory.h"

namespace Stage {

extern std::function<void()> OnSleep;  // runs in place of each sleep
Strings TakeDebugOutput();

// The files. The process seems to be <ProcessDirectory>/Host.exe, and this module, behind a path of more than 260
// characters, <ModuleDirectory>/Orv.so.
const std::filesystem::path& Root();  // of this process alone; it goes with it
std::filesystem::path ProcessDirectory();
std::filesystem::path ModuleDirectory();
extern std::atomic<bool> ModuleIsKnown;  // false: its path can't be told
Harbor::WideString Wide(const std::filesystem::path& path);
void WriteText(const std::filesystem::path& path, const std::string& bytes);  // with the directories above it
void MakeUnreadable(const std::filesystem::path& path);                       // as on a disk that fails

// The code of the HRX that the call throws, or S_OK.
template <class Call>
Harbor::HRESULT CodeThrownBy(Call call) {
    try {
        static_cast<void>(call());
        return Harbor::S_OK;
    } catch (const Harbor::HRX& failure) {
        return failure.Code();
    }
}

[[noreturn]] void ExitTelling();  // ends a child process with its failures on standard error, where its parent listens

}  // namespace Stage

// Runs the call in a process of its own, which is loaded anew with the environment of this moment.
#define EXPECT_IN_CHILD(call)                                                                 \
    do {                                                                                      \
        GTEST_FLAG_SET(death_test_style, "threadsafe");                                       \
        EXPECT_EXIT((call, Stage::ExitTelling()), testing::ExitedWithCode(EXIT_SUCCESS), ""); \
    } while (false)
