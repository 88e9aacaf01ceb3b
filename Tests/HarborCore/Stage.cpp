#include "Stage.h"

#include "Platform/Errors.h"
#include "Platform/Modules.h"
#include "Platform/Process.h"
#include "Platform/Time.h"
#include "Support/NextDefinition.h"

namespace Stage {
namespace {

Harbor::Lock debugLock;
Strings debugOutput;

}  // namespace

std::function<void()> OnSleep = [] {};
Platform::DWORD FrameLimit = AllFrames;
constinit std::atomic<bool> ModuleIsKnown{true};
constinit std::atomic<Platform::DWORD> ModuleError{Platform::ERROR_ACCESS_DENIED};

Strings TakeDebugOutput() {
    const Harbor::LockGuard guard(debugLock);
    return std::exchange(debugOutput, {});
}

const std::filesystem::path& Root() {
    static const TemporaryDirectory directory;
    return directory.Path();
}

std::filesystem::path ProcessDirectory() {
    return Root() / "process";
}

std::filesystem::path ModuleDirectory() {
    return Root() / std::string(200, 'm') / std::string(200, 'n');
}

Harbor::WideString Wide(const std::filesystem::path& path) {
    return path.u16string();
}

void WriteText(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    WriteAll(path, bytes);
}

void ExitWithResult() {
    const auto& result = *testing::UnitTest::GetInstance()->current_test_info()->result();
    for (int i = 0; i < result.total_part_count(); ++i) {
        std::fprintf(stderr, "%s\n", result.GetTestPartResult(i).summary());
    }
    std::exit(result.Failed() ? EXIT_FAILURE : EXIT_SUCCESS);
}

}  // namespace Stage

namespace Platform {

void Sleep(DWORD) noexcept {
    Stage::OnSleep();
}

DWORD GetCurrentProcessId() noexcept {
    return 0x71234;  // both have more than the 16 bits that a log line shows
}

DWORD GetCurrentThreadId() noexcept {
    return 0x30056;
}

HMODULE GetModuleHandleW(const WideChar*) noexcept {
    return nullptr;  // so that this program is taken for a library
}

BOOL GetModuleHandleExW(DWORD, const WideChar*, HMODULE* module) noexcept {
    SetLastError(Stage::ModuleError);
    *module = reinterpret_cast<HMODULE>(std::uintptr_t{1});
    return Stage::ModuleIsKnown ? TRUE : FALSE;
}

DWORD GetModuleFileNameW(HMODULE module, WideChar* path, DWORD size) noexcept {
    SetLastError(Stage::ModuleError);
    if (module != nullptr && !Stage::ModuleIsKnown) return 0;
    const auto name =
        Stage::Wide(module == nullptr ? Stage::ProcessDirectory() / "Host.exe" : Stage::ModuleDirectory() / "Orv.so");
    const std::size_t length = std::min<std::size_t>(name.size(), size);
    std::copy_n(name.c_str(), length, path);
    return static_cast<DWORD>(length);
}

PLATFORM_NOINLINE std::uint16_t RtlCaptureStackBackTrace(DWORD skip, DWORD count, void** frames, DWORD* hash) noexcept {
    static const auto next = NextDefinitionOf(&RtlCaptureStackBackTrace, __func__);
    return static_cast<std::uint16_t>(next(skip + 1, std::min(count, Stage::FrameLimit), frames, hash) + 0);
}

void OutputDebugStringW(const WideChar* text) noexcept {
    const Harbor::LockGuard guard(Stage::debugLock);
    Stage::debugOutput.push_back(Harbor::ToUtf8(text));
}

}  // namespace Platform
