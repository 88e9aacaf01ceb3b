#include "Platform/Modules.h"

#include <gtest/gtest.h>

#include "Platform/Errors.h"
#include "Programs.h"
#include "TemporaryDirectory.h"

using namespace Platform;

namespace {

namespace fs = std::filesystem;

class WorkingDirectory {
public:
    explicit WorkingDirectory(const fs::path& path) { fs::current_path(path); }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;
    ~WorkingDirectory() { fs::current_path(before_); }

private:
    const fs::path before_ = fs::current_path();
};

// Loads a copy of the test library by a path relative to the directory it lies in.
HMODULE LoadCopy(const TemporaryDirectory& directory) {
    fs::copy_file(ProgramPath().parent_path() / "libPlatformTestModule.so", directory / "a copy.so");
    const WorkingDirectory inside{directory.Path()};
    return LoadLibraryExW(u".\\a copy.so", nullptr, 0);
}

HMODULE LoadData(const std::string& path) {
    return LoadLibraryExW(fs::path{path}.u16string().c_str(), nullptr,
                          LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
}

fs::path FileName(HMODULE module) {
    WideChar path[1000];
    const DWORD length = GetModuleFileNameW(module, path, std::size(path));
    return std::u16string{path, length};
}

HMODULE ModuleOf(const void* address) {
    HMODULE module = nullptr;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    GetModuleHandleExW(flags, static_cast<const WideChar*>(address), &module);
    return module;
}

}  // namespace

TEST(Modules, RunTheirCodeAndNameTheirFileUntilEachLoadIsUndone) {
    const TemporaryDirectory directory;
    const fs::path path = directory / "a copy.so";
    const HMODULE module = LoadCopy(directory);
    ASSERT_EQ(LoadLibraryExW(path.u16string().c_str(), nullptr, 0), module);
    const auto answer = reinterpret_cast<int (*)()>(GetProcAddress(module, "AnswerOfTestModule"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    for (const char* const missing : {"NoSuchFunction", "memcpy"}) {
        EXPECT_EQ(GetProcAddress(module, missing), nullptr);
        EXPECT_EQ(GetLastError(), ERROR_PROC_NOT_FOUND);
    }
    EXPECT_EQ(FileName(module), path);
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_EQ(ModuleOf(reinterpret_cast<const void*>(answer)), module);
    fs::remove(path);
    EXPECT_EQ(FileName(module), path);
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_EQ(ModuleOf(module), nullptr);
    EXPECT_FALSE(FreeLibrary(module));
}

TEST(Modules, OfMessagesAreSearchedBesideTheProgramAndInTheWorkingDirectory) {
    const TemporaryDirectory directory;
    const WorkingDirectory inside{directory.Path()};
    const std::string name = directory.Path().filename().string() + ".msg";
    for (const fs::path& place : {directory.Path(), ProgramPath().parent_path()}) {
        WriteAll(place / name, "0x80040201\t0\tText\n");
        const HMODULE module = LoadData(name);
        fs::remove(place / name);
        EXPECT_TRUE(FreeLibrary(module)) << place;
    }
    EXPECT_EQ(LoadData(name), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
}
