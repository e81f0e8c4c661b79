// Conversion of text to the other variant types, as values read from files
// and typed by users reach the library.
#include <string>

#include "com/variant.h"
#include "com/variant_date.h"
#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const qv::Variant v{std::string(qv::fuzz::AsText(data, size))};
  qv::fuzz::ExpectOnlyErrors([&] { v.ToBoolean(); });
  qv::fuzz::ExpectOnlyErrors([&] { v.ToInteger(); });
  qv::fuzz::ExpectOnlyErrors([&] { v.ToLong(); });
  qv::fuzz::ExpectOnlyErrors([&] { v.ToSingle(); });
  qv::fuzz::ExpectOnlyErrors([&] { v.ToDouble(); });
  qv::fuzz::ExpectOnlyErrors([&] {
    const qv::Date d = v.ToDate();
    // A date that was read can be printed and read again.
    const std::string text = qv::FormatDate(d);
    qv::fuzz::Require(qv::ParseDate(text).has_value(),
                      "a formatted date does not read back");
  });
  return 0;
}
