// The suite's settings file 'enviroment.asc' as the path service reads it.
#include <unistd.h>

#include <cstdio>
#include <string>

#include "central/qv_path.h"
#include "fuzz_input.h"

namespace {

std::string ScratchFile() {
  const char* tmp = std::getenv("TMPDIR");
  return std::string(tmp != nullptr && *tmp != '\0' ? tmp : "/tmp") +
         "/qv_fuzz_enviroment_" + std::to_string(getpid()) + ".asc";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string file = ScratchFile();
  std::FILE* out = std::fopen(file.c_str(), "wb");
  if (out == nullptr) return 0;
  std::fwrite(data, 1, size, out);
  std::fclose(out);
  const qv::central::QvPath path(file);
  const int32_t state = path.GetState();
  qv::fuzz::Require(state == qv::central::QvPath::kValid ||
                        state == qv::central::QvPath::kEnviromentAscNotValid ||
                        state == qv::central::QvPath::kPathNotValid,
                    "unknown state");
  qv::fuzz::Require((state == qv::central::QvPath::kEnviromentAscNotValid) ==
                        path.GetCatalogPath().empty(),
                    "state and catalogue path disagree");
  return 0;
}
