// ServiceSlot holds what the host has installed for one replaceable platform
// service (a handler function or a service object), for the whole process.
// An empty value means "nothing installed": callers then use their default.
// The slot owns a copy of the installed value; readers get their own copy,
// so a handler may install or reset its slot while it runs.
// Threads: every call takes the slot's mutex; any thread may install or read.
#ifndef QVGLOBAL_PLATFORM_SERVICE_SLOT_H_
#define QVGLOBAL_PLATFORM_SERVICE_SLOT_H_

#include <mutex>
#include <utility>

namespace qv::platform {

// T is a std::function or a std::shared_ptr: anything that tests false when
// empty.
template <typename T>
class ServiceSlot {
 public:
  // The installed value, or `fallback` when none is installed.
  T Get(const T& fallback) const {
    std::lock_guard<std::mutex> lock(mutex_);
    return installed_ ? installed_ : fallback;
  }
  // Installs `value`; an empty value removes what was installed.
  void Install(T value) {
    std::lock_guard<std::mutex> lock(mutex_);
    installed_ = std::move(value);
  }
  void Reset() { Install(T{}); }

 private:
  mutable std::mutex mutex_;
  T installed_{};
};

}  // namespace qv::platform

#endif  // QVGLOBAL_PLATFORM_SERVICE_SLOT_H_
