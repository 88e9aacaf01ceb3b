// The program that runs, and those that it starts.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

// What a shell command writes to both of its outputs.
inline std::string OutputOf(const std::string& command) {
    FILE* const output = popen((command + " 2>&1").c_str(), "r");
    std::string text;
    for (int character = 0; (character = fgetc(output)) != EOF;) text += static_cast<char>(character);
    EXPECT_EQ(pclose(output), 0) << text;
    return text;
}

inline std::filesystem::path ProgramPath() {
    return std::filesystem::read_symlink("/proc/self/exe");
}
