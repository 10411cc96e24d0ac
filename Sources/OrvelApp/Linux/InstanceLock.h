#pragma once

#include <string_view>

namespace OrvelApp {

/// Makes sure of one instance per user and display also where no bus could. Released by the kernel
/// with the process, however that ends.
class InstanceLock {
  public:
    /// `display` as in the environment.
    explicit InstanceLock(std::string_view display);
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    /// False only when another process is known to hold it. Where no file can be made, two
    /// instances are the smaller evil: the second finds the shortcuts taken.
    bool isOurs() const { return isOurs_; }

  private:
    int file_ = -1;
    bool isOurs_ = true;
};

}  // namespace OrvelApp
