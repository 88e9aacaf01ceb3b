// Files that the tests open for appending.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "Platform/Errors.h"
#include "Platform/Files.h"
#include "Platform/Process.h"
#include "Support/TemporaryDirectory.h"

using namespace Platform;

inline constexpr DWORD ShareNothing = 0;
inline constexpr DWORD ShareEverything = 7;

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { EXPECT_TRUE(CloseHandle(handle)); }
};
using File = std::unique_ptr<HANDLE, HandleCloser>;

inline File Open(const std::u16string& path, DWORD sharing = ShareEverything) {
    return File{CreateFileW(path.c_str(), FILE_APPEND_DATA, sharing, nullptr, OPEN_ALWAYS, 0, nullptr)};
}

inline bool IsOpen(const File& file) {
    return file.get() != INVALID_HANDLE_VALUE;
}

// Returns the error and the number of bytes written.
inline std::pair<DWORD, DWORD> Append(HANDLE file, const std::string& text) {
    DWORD written = 0;
    const BOOL done = WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    return {done ? ERROR_SUCCESS : GetLastError(), written};
}
