// Fuzzes ConvertMsg with arbitrary message texts and values: it must never
// raise, crash or read out of bounds, whatever the markup. The input is the
// message text, optionally followed by a NUL byte and placeholder values
// separated by NUL bytes; values that read as numbers are passed as numbers.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "com/safe_array.h"
#include "com/variant.h"
#include "messages/convert_msg.h"
#include "platform/message_box.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const bool kQuiet = [] {
    qv::platform::MessageBox::SetHandler(
        [](const std::string&, const std::string&, int) {
          return qv::platform::MessageBox::kOk;
        });
    return true;
  }();
  (void)kQuiet;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const size_t end = input.find('\0');
  const std::string text(input.substr(0, end));
  qv::SafeArray values;
  for (size_t start = end; start != std::string_view::npos && start < size;) {
    const size_t next = input.find('\0', start + 1);
    const std::string value(input.substr(start + 1, next - start - 1));
    const auto number = qv::ParseNumber(value);
    values.Append(number ? qv::Variant(*number) : qv::Variant(value));
    start = next;
  }
  (void)qv::ConvertMsg(text, values);
  return 0;
}
