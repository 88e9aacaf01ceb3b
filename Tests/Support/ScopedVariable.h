// Sets an environment variable and restores its former value in the destructor.
#pragma once

#include <optional>
#include <string>

#include "Support/ThisSystem.h"

class ScopedVariable {
public:
    ScopedVariable(std::string name, const std::optional<std::string>& value)
        : name_(std::move(name)), former_(ThisSystem::Variable(name_)) {
        ThisSystem::SetVariable(name_, value);
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable() { ThisSystem::SetVariable(name_, former_); }

private:
    const std::string name_;
    const std::optional<std::string> former_;
};
