// Fields that one thread writes and another one reads.
#pragma once

#include <atomic>

namespace kitbag {

/// A small value whose changes other threads see, without a lock. Unlike the atomic that it
/// consists of it is copied by its value, so that classes that hold one are copied member by
/// member.
template <class T>
class CrossThread {
 public:
    CrossThread() = default;
    CrossThread(const CrossThread& other) : value_(T{other}) {}
    // NOLINTNEXTLINE(cert-oop54-cpp): assigned to itself it keeps its value
    CrossThread& operator=(const CrossThread& other) { return *this = T{other}; }
    CrossThread& operator=(T value) {
        value_ = value;
        return *this;
    }
    operator T() const { return value_; }

 private:
    std::atomic<T> value_ = T{};
};

}  // namespace kitbag
