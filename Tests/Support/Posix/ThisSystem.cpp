#include "Support/ThisSystem.h"

#include <dlfcn.h>
#include <malloc.h>
#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <system_error>

namespace ThisSystem {

namespace {

std::size_t EntriesOf(const char* directory) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(directory), {}));
}

}  // namespace

std::optional<std::string> Variable(const std::string& name) {
    const char* const value = getenv(name.c_str());
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

void SetVariable(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
        setenv(name.c_str(), value->c_str(), 1);
    } else {
        unsetenv(name.c_str());
    }
}

std::filesystem::path MakeTemporaryDirectory() {
    std::string path = (std::filesystem::temp_directory_path() / "OrvTest-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) throw std::system_error(errno, std::generic_category(), path);
    return path;
}

std::size_t Threads() {
    return EntriesOf("/proc/self/task");
}

std::size_t OpenThings() {
    return EntriesOf("/proc/self/fd");
}

std::size_t UsedMemory() {
    malloc_trim(0);
    std::size_t all = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

void* NextDefinition(void* own, const char* /*name*/) {
    Dl_info info{};
    dladdr(own, &info);
    return dlsym(RTLD_NEXT, info.dli_sname);
}

}  // namespace ThisSystem
