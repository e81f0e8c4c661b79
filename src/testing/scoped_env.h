// ScopedEnv is a test helper: it sets (or, with std::nullopt, removes)
// environment variables for the life of the object and puts back what was
// there before when it goes. It owns nothing else.
#ifndef QVGLOBAL_TESTING_SCOPED_ENV_H_
#define QVGLOBAL_TESTING_SCOPED_ENV_H_

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qv::testing {

class ScopedEnv {
 public:
  ScopedEnv() = default;
  ScopedEnv(const std::string& name, std::optional<std::string> value) {
    Set(name, std::move(value));
  }
  ~ScopedEnv();
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

  void Set(const std::string& name, std::optional<std::string> value);

 private:
  // Each variable's value before its first Set (nullopt: it was unset).
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

}  // namespace qv::testing

#endif  // QVGLOBAL_TESTING_SCOPED_ENV_H_
