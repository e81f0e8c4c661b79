// Connection strings as callers and old project files write them.
#include "datasource/internal/connection_string.h"
#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text = qv::fuzz::AsText(data, size);
  qv::fuzz::ExpectOnlyErrors([&] {
    const qv::ds::ConnectionSettings s =
        qv::ds::ParseConnectionString(text, "fuzz");
    qv::fuzz::Require(!s.data_source.empty(), "accepted an empty Data Source");
    qv::fuzz::Require(s.data_source.size() <= text.size(),
                      "Data Source longer than the input");
  });
  return 0;
}
