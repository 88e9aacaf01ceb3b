#include "Stage.h"

#include "Platform/Files.h"

namespace Stage {

// It is held open and not shared.
std::shared_ptr<void> MakeUnreadable(const std::filesystem::path& path) {
    WriteText(path, "");
    const Platform::HANDLE file =
        Platform::CreateFileW(Wide(path).c_str(), Platform::FILE_APPEND_DATA, 0, nullptr, Platform::OPEN_ALWAYS,
                              Platform::FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_NE(file, Platform::INVALID_HANDLE_VALUE);
    return {file, [path](Platform::HANDLE held) {
                Platform::CloseHandle(held);
                std::filesystem::remove(path);
            }};
}

}  // namespace Stage
