// What the tests need of the system and the product does not.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace ThisSystem {

// The value of an environment variable. Setting nothing removes the variable.
std::optional<std::string> Variable(const std::string& name);
void SetVariable(const std::string& name, const std::optional<std::string>& value);

// Makes a new directory for files of a test.
std::filesystem::path MakeTemporaryDirectory();

// The number of threads of this process, and of the things that it has open: descriptors; on Windows handles
// and thread-local slots.
std::size_t Threads();
std::size_t OpenThings();

// The memory that the process uses, in bytes, after the allocator has returned what it caches.
std::size_t UsedMemory();

// The function that `own`, a function of the test program with this plain name, has replaced. On Windows: the function
// to which the replaced one forwards, or that of the node store.
void* NextDefinition(void* own, const char* name);

}  // namespace ThisSystem
