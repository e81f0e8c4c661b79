// `qv keys CODE...`: the send-keys string of each toolbar key code, one per
// line (an empty line for code 0). The first code without a key string ends
// the command with its error.
#include <CLI/CLI.hpp>
#include <cstdint>
#include <iostream>
#include <vector>

#include "qv/command_registry.h"
#include "shell/cqv_active_bar.h"

namespace qv::tool {
namespace {

void PrintKeyStrings(std::vector<int16_t> codes) {
  const CQVActiveBar bar;
  for (int16_t code : codes) {
    std::cout << bar.ABKeyCodeToSendKeyStr(code) << '\n';
  }
}

void AddKeysCommand(CLI::App& app) {
  CLI::App* keys = app.add_subcommand(
      "keys", "Print the keyboard shortcut (send-keys string) of key codes");
  auto codes = std::make_shared<std::vector<int16_t>>();
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
