#pragma once

#include <cstdlib>
#include <optional>
#include <string>

/// Sets an environment variable, or unsets it if `value` is null. The destructor restores it.
class Environment {
  public:
    Environment(const char* name, const char* value) : name_(name) {
        if (const char* const old = std::getenv(name)) old_ = old;
        set(value);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { set(old_ ? old_->c_str() : nullptr); }

  private:
    void set(const char* value) const {
        value != nullptr ? setenv(name_, value, 1) : unsetenv(name_);
    }

    const char* name_;
    std::optional<std::string> old_;
};
