// Sets an environment variable and restores its former value in the destructor.
#pragma once

#include <stdlib.h>

#include <optional>
#include <string>

class ScopedVariable {
public:
    ScopedVariable(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
        if (const char* const former = getenv(name_.c_str())) former_ = former;
        Set(value);
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable() { Set(former_); }

private:
    void Set(const std::optional<std::string>& value) {
        if (value) {
            setenv(name_.c_str(), value->c_str(), 1);
        } else {
            unsetenv(name_.c_str());
        }
    }

    const std::string name_;
    std::optional<std::string> former_;
};
