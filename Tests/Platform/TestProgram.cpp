// A program that isn't linked with the platform layer: it loads and unloads the library that it is given, many times
// over, and in the first round prints its own command line with it.
#include <dlfcn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <thread>

#include "Platform/Process.h"

namespace {

[[noreturn]] void Fail(const char* what) {
    std::fprintf(stderr, "%s: %s\n", what, dlerror());
    exit(1);
}

template <class Function>
Function* Find(void* library, const char* symbol) {
    void* const found = dlsym(library, symbol);
    if (found == nullptr) Fail(symbol);
    return reinterpret_cast<Function*>(found);
}

}  // namespace

int main(int, char** arguments) {
    for (int round = 0; round < 50; ++round) {
        void* const library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) Fail("not loaded");
        const auto line = Find<decltype(Platform::GetCommandLineW)>(library, "_ZN8Platform15GetCommandLineWEv")();
        const auto print =
            Find<decltype(Platform::OutputDebugStringW)>(library, "_ZN8Platform18OutputDebugStringWEPKDs");
        if (round == 0) print(line);
        const auto makeThreadState =
            Find<decltype(Platform::GetCurrentThreadId)>(library, "_ZN8Platform18GetCurrentThreadIdEv");
        makeThreadState();
        std::jthread{makeThreadState}.join();
        dlclose(library);
        if (dlopen(arguments[1], RTLD_NOW | RTLD_NOLOAD) != nullptr) Fail("still loaded");
    }
    // No handler of a library that is gone may run.
    const pid_t child = fork();
    if (child == 0) _exit(0);
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0 ? 0 : 1;
}
