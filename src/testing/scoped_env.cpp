#include "testing/scoped_env.h"

#include <stdlib.h>

#include <algorithm>

namespace qv::testing {
namespace {

void Apply(const std::string& name, const std::optional<std::string>& value) {
  if (value) {
    ::setenv(name.c_str(), value->c_str(), 1);
  } else {
    ::unsetenv(name.c_str());
  }
}

}  // namespace

void ScopedEnv::Set(const std::string& name, std::optional<std::string> value) {
  const bool known =
      std::any_of(saved_.begin(), saved_.end(),
                  [&](const auto& s) { return s.first == name; });
  if (!known) {
    const char* old = ::getenv(name.c_str());
    saved_.emplace_back(name,
                        old ? std::optional<std::string>(old) : std::nullopt);
  }
  Apply(name, value);
}

ScopedEnv::~ScopedEnv() {
  for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
    Apply(it->first, it->second);
  }
}

}  // namespace qv::testing
