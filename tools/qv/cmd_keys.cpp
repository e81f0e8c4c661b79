// `qv keys CODE...`: the send-keys string of each toolbar key code, one per
// line (an empty line for code 0). A code that is not a whole number (13) or
// does not fit 16 bits (6) ends the command before anything is printed; the
// first code without a key string ends it with its error.
#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdint>
#include <iostream>
#include <limits>
#include <string>
#include <system_error>
#include <vector>

#include "com/error.h"
#include "qv/command_registry.h"
#include "shell/cqv_active_bar.h"

namespace qv::tool {
namespace {

// A key code as typed: a whole number, optionally signed, nothing else.
// Raises 13 for anything else and 6 outside the 16-bit range.
int16_t ParseKeyCode(const std::string& text) {
  long value = 0;
  const char* end = text.data() + text.size();
  // from_chars reads a '-' but no '+': skip one '+', and refuse a sign
  // after it ("+-5"), which from_chars would otherwise take as -5.
  const char* begin = text.data() + (text.starts_with('+') ? 1 : 0);
  const auto [ptr, ec] = std::from_chars(begin, end, value);
  if (text.empty() || ptr != end || ec == std::errc::invalid_argument ||
      (begin != text.data() && *begin == '-')) {
    throw Error(err::kTypeMismatch, "qv keys",
                "key code is not a whole number: '" + text + "'");
  }
  if (ec == std::errc::result_out_of_range ||
      value < std::numeric_limits<int16_t>::min() ||
      value > std::numeric_limits<int16_t>::max()) {
    throw Error(err::kOverflow, "qv keys",
                "key code out of range (-32768 to 32767): '" + text + "'");
  }
  return static_cast<int16_t>(value);
}

void PrintKeyStrings(const std::vector<std::string>& texts) {
  std::vector<int16_t> codes;
  for (const std::string& text : texts) codes.push_back(ParseKeyCode(text));
  const CQVActiveBar bar;
  for (int16_t code : codes) {
    std::cout << bar.ABKeyCodeToSendKeyStr(code) << '\n';
  }
}

void AddKeysCommand(CLI::App& app) {
  CLI::App* keys = app.add_subcommand(
      "keys", "Print the keyboard shortcut (send-keys string) of key codes");
  auto codes = std::make_shared<std::vector<std::string>>();
  keys->add_option("CODE", *codes, "Toolbar key codes (16-bit integers)")
      ->required();
  keys->callback([codes] { PrintKeyStrings(*codes); });
}

void ShowKeyStrings(DemoContext& ctx) {
  const CQVActiveBar bar;
  for (int16_t code : {0, 1, 26, 27, 38, 60, 71, 75}) {
    ctx.out << "  key code " << code << " -> \""
            << bar.ABKeyCodeToSendKeyStr(code) << "\"\n";
  }
  int16_t ctrl_f1 = bar.ABKeyCodeFromKey(112, 2);
  ctx.out << "  Ctrl+F1 is recorded as " << ctrl_f1
          << ", which reads back as \"" << bar.ABKeyCodeToSendKeyStr(ctrl_f1)
          << "\"\n";
}

[[maybe_unused]] const bool kKeysRegistered =
    RegisterCommand({"keys", AddKeysCommand});
[[maybe_unused]] const bool kKeysDemoRegistered =
    RegisterDemoStep(10, "Toolbar key codes", ShowKeyStrings);

}  // namespace
}  // namespace qv::tool
