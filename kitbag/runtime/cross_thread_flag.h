// A flag that one thread sets and another one reads.
#pragma once

#include <atomic>

namespace kitbag {

/// A bool whose changes other threads see, without a lock. Unlike the atomic that it consists of it
/// is copied by its value, so that classes that hold one are copied member by member.
class CrossThreadFlag {
 public:
    CrossThreadFlag() = default;
    CrossThreadFlag(const CrossThreadFlag& other) : value_(bool{other}) {}
    // NOLINTNEXTLINE(cert-oop54-cpp): assigned to itself it keeps its value
    CrossThreadFlag& operator=(const CrossThreadFlag& other) { return *this = bool{other}; }
    CrossThreadFlag& operator=(bool value) {
        value_ = value;
        return *this;
    }
    operator bool() const { return value_; }

 private:
    std::atomic<bool> value_ = false;
};

}  // namespace kitbag
