// CommonAppDataFolder names the folder for data shared by all users of the
// machine, under which the suite keeps its main settings file. It is the
// folder given by the environment variable QV_COMMON_APPDATA when that is
// set and not empty, else /var/lib. The folder is neither tested nor
// created here.
#ifndef QVGLOBAL_PLATFORM_COMMON_APP_DATA_H_
#define QVGLOBAL_PLATFORM_COMMON_APP_DATA_H_

#include <string>

namespace qv::platform {

std::string CommonAppDataFolder();

}  // namespace qv::platform

#endif  // QVGLOBAL_PLATFORM_COMMON_APP_DATA_H_
