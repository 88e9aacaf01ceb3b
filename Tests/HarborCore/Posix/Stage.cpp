#include "Stage.h"

#include <fcntl.h>

#include <csignal>

namespace Stage {

std::shared_ptr<void> MakeUnreadable(const std::filesystem::path& path) {
    std::filesystem::create_directories(path.parent_path());
    std::filesystem::remove(path);
    std::filesystem::create_symlink("/proc/self/mem", path);  // its first page cannot be read
    return {nullptr, [path](void*) { std::filesystem::remove(path); }};
}

int TakeLease(const std::filesystem::path& path) {
    std::signal(SIGIO, SIG_IGN);  // the system asks for the lease with it
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT, 0600);
    EXPECT_EQ(fcntl(descriptor, F_SETLEASE, F_WRLCK), 0);
    return descriptor;
}

}  // namespace Stage
