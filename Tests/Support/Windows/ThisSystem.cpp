#include "Support/ThisSystem.h"

#include <atomic>
#include <vector>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// After windows.h, which its declarations need.
#include <psapi.h>
#include <tlhelp32.h>

namespace ThisSystem {

std::optional<std::string> Variable(const std::string& name) {
    const char* const value = getenv(name.c_str());
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

// Both the runtime and the system keep the environment. The runtime's function cannot set an empty value.
void SetVariable(const std::string& name, const std::optional<std::string>& value) {
    _putenv_s(name.c_str(), value.value_or("").c_str());
    ::SetEnvironmentVariableA(name.c_str(), value ? value->c_str() : nullptr);
}

std::filesystem::path MakeTemporaryDirectory() {
    static std::atomic<unsigned> number{0};
    const std::string name = "OrvTest-" + std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(++number);
    const std::filesystem::path path = std::filesystem::temp_directory_path() / name;
    std::filesystem::remove_all(path);
    std::filesystem::create_directory(path);
    return path;
}

std::size_t Threads() {
    const HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    std::size_t count = 0;
    for (BOOL found = ::Thread32First(snapshot, &entry); found; found = ::Thread32Next(snapshot, &entry)) {
        if (entry.th32OwnerProcessID == ::GetCurrentProcessId()) ++count;
    }
    ::CloseHandle(snapshot);
    return count;
}

static std::size_t Handles() {
    DWORD count = 0;
    ::GetProcessHandleCount(::GetCurrentProcess(), &count);
    if (count != 0) return count;
    // The emulator does not count. It gives a new handle the lowest number that is free.
    const HANDLE newest = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
    ::CloseHandle(newest);
    return reinterpret_cast<std::uintptr_t>(newest) / 4;
}

std::size_t OpenThings() {
    constexpr std::size_t slotsOfAProcess = 1088;
    std::vector<DWORD> freeSlots;
    for (DWORD slot; (slot = ::TlsAlloc()) != TLS_OUT_OF_INDEXES;) freeSlots.push_back(slot);
    for (const DWORD slot : freeSlots) ::TlsFree(slot);
    return Handles() + (slotsOfAProcess - freeSlots.size());
}

std::size_t UsedMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof(counters));
    return counters.PagefileUsage;
}

void* NextDefinition(void* /*own*/, const char* name) {
    for (const char* const library : {"kernel32.dll", "NodeFabric.dll"}) {
        if (const FARPROC found = ::GetProcAddress(::GetModuleHandleA(library), name)) {
            return reinterpret_cast<void*>(found);
        }
    }
    return nullptr;
}

}  // namespace ThisSystem
