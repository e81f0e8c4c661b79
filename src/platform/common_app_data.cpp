#include "platform/common_app_data.h"

#include <cstdlib>

namespace qv::platform {

std::string CommonAppDataFolder() {
  const char* folder = std::getenv("QV_COMMON_APPDATA");
  return folder != nullptr && *folder != '\0' ? folder : "/var/lib";
}

}  // namespace qv::platform
