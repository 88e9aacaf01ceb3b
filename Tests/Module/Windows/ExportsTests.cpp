#include <gtest/gtest.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace {

TEST(BinaryInterface, ExportsOnlyOneFunction) {
    const HMODULE library = ::LoadLibraryA(ORV_MODULE_PATH);
    ASSERT_NE(library, nullptr);
    const auto* const base = reinterpret_cast<const char*>(library);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const head = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& directory = head->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    const auto* const exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + directory.VirtualAddress);
    const auto* const names = reinterpret_cast<const DWORD*>(base + exports->AddressOfNames);
    EXPECT_EQ(exports->NumberOfFunctions, 1u);
    EXPECT_STREQ(base + names[0], "GetComponentsModuleObject");
    ::FreeLibrary(library);
}

}  // namespace
