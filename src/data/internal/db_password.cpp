#include "data/internal/db_password.h"

#include <cstdint>

namespace qv {
namespace {

constexpr uint8_t kMask = 0x2A;
constexpr int kShift = 7;
constexpr int kStep = 3;

constexpr unsigned char kStoredPassword[] = {
    114, 170, 26, 74, 175, 175, 169, 23, 73, 169, 179, 167, 179, 117, 75};

}  // namespace

std::string UnscrambleCharCodes(std::string_view stored) {
  std::string plain;
  plain.reserve(stored.size());
  for (size_t i = 0; i < stored.size(); ++i) {
    const int code = (static_cast<uint8_t>(stored[i]) ^ kMask) - kShift -
                     kStep * static_cast<int>(i);
    plain.push_back(static_cast<char>(static_cast<uint8_t>(code & 0xFF)));
  }
  return plain;
}

std::string ScrambleCharCodes(std::string_view plain) {
  std::string stored;
  stored.reserve(plain.size());
  for (size_t i = 0; i < plain.size(); ++i) {
    const int code =
        static_cast<uint8_t>(plain[i]) + kShift + kStep * static_cast<int>(i);
    stored.push_back(static_cast<char>((code & 0xFF) ^ kMask));
  }
  return stored;
}

std::string QvDatabasePassword() {
  return UnscrambleCharCodes(std::string_view(
      reinterpret_cast<const char*>(kStoredPassword), sizeof(kStoredPassword)));
}

std::string QvPasswordSetting() {
  return ";Jet OLEDB:Database Password=" + QvDatabasePassword();
}

}  // namespace qv
