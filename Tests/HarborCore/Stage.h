// Shared by the tests: sleeps that take no time, the captured debug output, the lines of the log, directories, and
// child processes.
#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <memory>

#include "Common/Base/HRes.h"
#include "Common/Base/Text.h"
#include "Support/LogLines.h"
#include "Support/TemporaryDirectory.h"

namespace Stage {

extern std::function<void()> OnSleep;  // runs in place of each sleep
Strings TakeDebugOutput();
inline constexpr Platform::DWORD AllFrames = 0xFFFF;
extern Platform::DWORD FrameLimit;  // the stack shows at most so many frames

// Files. The program's path is <ProcessDirectory>/Host.exe. The module's path is <ModuleDirectory>/Orv.so, which is
// longer than 260 characters.
const std::filesystem::path& Root();  // removed at the end of this process
std::filesystem::path ProcessDirectory();
std::filesystem::path ModuleDirectory();
extern std::atomic<bool> ModuleIsKnown;  // false if no module can be determined; ModuleError is then the last error
extern std::atomic<Platform::DWORD> ModuleError;
inline const auto OtherModule = reinterpret_cast<Platform::HMODULE>(std::uintptr_t{2});
Harbor::WideString Wide(const std::filesystem::path& path);
void WriteText(const std::filesystem::path& path, const std::string& bytes);  // creates the directories above it

// The file exists, but cannot be read, as on a disk that fails. When the returned object ends, there is no file.
[[nodiscard]] std::shared_ptr<void> MakeUnreadable(const std::filesystem::path& path);

// Only on POSIX. Until the descriptor that it returns is closed, every other open of the file waits, or fails if it
// must not wait.
int TakeLease(const std::filesystem::path& path);

// Returns the code of the HRX that the call throws, or S_OK.
template <class Call>
Harbor::HRESULT CodeThrownBy(Call call) {
    try {
        static_cast<void>(call());
        return Harbor::S_OK;
    } catch (const Harbor::HRX& failure) {
        return failure.Code();
    }
}

[[noreturn]] void ExitWithResult();  // ends a child process and writes its failures to standard error

}  // namespace Stage

// Runs the call in a new process that has the current environment.
#define EXPECT_IN_CHILD(call)                                                                    \
    do {                                                                                         \
        GTEST_FLAG_SET(death_test_style, "threadsafe");                                          \
        EXPECT_EXIT((call, Stage::ExitWithResult()), testing::ExitedWithCode(EXIT_SUCCESS), ""); \
    } while (false)
