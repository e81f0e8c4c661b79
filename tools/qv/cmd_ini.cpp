// `qv ini get|set|delete|show`: reads and writes the suite's INI files as
// the library does, for support staff checking a user's settings. `get` and
// `show` fail for a missing file, `set` and `delete` when the file could not
// be written; the message goes to standard error and the tool exits with 1.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "com/error.h"
#include "com/object.h"
#include "com/text.h"
#include "platform/file_system.h"
#include "platform/profile.h"
#include "qv/command_registry.h"
#include "qv/tool_text.h"
#include "shell/c_control_ini_manager.h"
#include "shell/cqv_ini_manager.h"

namespace qv::tool {
namespace {

using platform::Profile;

struct IniArgs {
  std::string file, section, key, value;
};

Error Failure(const std::string& text) { return Error(1, "qv ini", text); }

void RequireFile(const std::string& file) {
  if (!platform::FileSystem::Current()->FileExists(file)) {
    throw Failure("qv ini: file not found: " + file);
  }
}

void RequireWritten(bool ok, const std::string& file) {
  if (!ok) throw Failure("qv ini: could not write " + file);
}

// Prints the sections (only `only` when it is not empty), each line
// indented by `indent`, the keys by two more blanks.
void PrintSections(std::ostream& out,
                   const std::vector<platform::ProfileSection>& sections,
                   const std::string& indent, const std::string& only) {
  for (const platform::ProfileSection& s : sections) {
    if (!only.empty() && !text::EqualsText(s.name, only)) continue;
    // Names and values come from the file: escaped for the terminal.
    out << indent << '[' << EscapeControls(s.name) << "]\n";
    for (const auto& [key, value] : s.keys) {
      out << indent << "  " << EscapeControls(key) << '='
          << EscapeControls(value) << '\n';
    }
  }
}

void Show(const IniArgs& a) {
  RequireFile(a.file);
  const auto sections = Profile::ReadSections(a.file);
  if (!sections) throw Failure("qv ini: cannot read " + a.file);
  PrintSections(std::cout, *sections, "", a.section);
}

void AddIniCommand(CLI::App& app) {
  CLI::App* ini =
      app.add_subcommand("ini", "Read and write INI settings files");
  ini->require_subcommand(1);
  auto a = std::make_shared<IniArgs>();

  CLI::App* get = ini->add_subcommand("get", "Print the value of a key");
  get->add_option("FILE", a->file)->required();
  get->add_option("SECTION", a->section)->required();
  get->add_option("KEY", a->key)->required();
  get->callback([a] {
    RequireFile(a->file);
    std::cout << EscapeControls(
                     Profile::GetString(a->file, a->section, a->key, ""))
              << '\n';
  });

  CLI::App* set = ini->add_subcommand("set", "Write the value of a key");
  set->add_option("FILE", a->file)->required();
  set->add_option("SECTION", a->section)->required();
  set->add_option("KEY", a->key)->required();
  set->add_option("VALUE", a->value)->required();
  set->callback([a] {
    RequireWritten(Profile::WriteString(a->file, a->section, a->key, a->value),
                   a->file);
  });

  CLI::App* del = ini->add_subcommand("delete", "Delete a key or a section");
  del->add_option("FILE", a->file)->required();
  del->add_option("SECTION", a->section)->required();
  del->add_option("KEY", a->key, "Without it, the whole section goes");
  del->callback([a] {
    std::optional<std::string_view> key;
    if (!a->key.empty()) key = a->key;
    RequireWritten(Profile::WriteString(a->file, a->section, key, std::nullopt),
                   a->file);
  });

  CLI::App* show =
      ini->add_subcommand("show", "Print the sections and keys as they read");
  show->add_option("FILE", a->file)->required();
  show->add_option("SECTION", a->section, "Only this section");
  show->callback([a] { Show(*a); });
}

// A form of the demonstration: geometry properties and Move.
class DemoForm : public Object {
 public:
  Variant Invoke(std::string_view name, InvokeKind kind, Args args) override {
    if (text::EqualsText(name, "Move")) {
      for (size_t i = 0; i < args.size(); ++i) values_[i] = args[i].ToLong();
      return {};
    }
    if (text::EqualsText(name, "Name")) return Variant("frmDemo");
    for (size_t i = 0; i < 4; ++i) {
      if (!text::EqualsText(name, kMembers[i])) continue;
      if (kind == InvokeKind::kLet) values_[i] = args[0].ToLong();
      return Variant(values_[i]);
    }
    return Object::Invoke(name, kind, args);
  }
  std::string Describe() const {
    return fmt::format("left {}, top {}, {} x {}", values_[0], values_[1],
                       values_[2], values_[3]);
  }

 private:
  static constexpr const char* kMembers[] = {"left", "top", "Width", "Height"};
  int32_t values_[4] = {0, 0, 640, 480};
};

void ShowSettings(DemoContext& ctx) {
  const std::string file = (ctx.folder / "demo.ini").string();
  CqvIniManager ini;
  ini.SetIniFile(file);
  ini.WriteString("Allgemein", "Sprache", "de");
  ini.WriteLong("Allgemein", "Fenster", 3);
  ini.WriteBoolean("Allgemein", "Raster", true);
  ctx.out << fmt::format("  GetString(\"ALLGEMEIN\", \"sprache\") = \"{}\"\n",
                         ini.GetString("ALLGEMEIN", "sprache"));
  ctx.out << fmt::format("  GetBoolean(\"Allgemein\", \"Raster\") = {}\n",
                         ini.GetBoolean("Allgemein", "Raster"));
  try {
    ini.GetLong("", "Fenster");
  } catch (const Error& e) {
    ctx.out << fmt::format("  GetLong(\"\", \"Fenster\") fails: {}\n",
                           e.description());
  }

  auto form = std::make_shared<DemoForm>();
  CControlIniManager control;
  control.SetIniFile(file);
  std::string section;
  control.LoadForm(Variant(ObjectPtr(form)), section);
  ctx.out << "  a form never saved opens centred: " << form->Describe() << '\n';
  form->Call("Move", {int32_t{40}, int32_t{30}, int32_t{800}, int32_t{600}});
  control.SaveForm(Variant(ObjectPtr(form)), section);
  form->Call("Move", {int32_t{0}, int32_t{0}, int32_t{640}, int32_t{480}});
  control.LoadForm(Variant(ObjectPtr(form)), section);
  ctx.out << "  after saving and reopening:     " << form->Describe() << '\n';
  ctx.out << "  qv ini show demo.ini:\n";
  PrintSections(ctx.out,
                Profile::ReadSections(file).value_or(
                    std::vector<platform::ProfileSection>{}),
                "    ", "");
}

[[maybe_unused]] const bool kIniRegistered =
    RegisterCommand({"ini", AddIniCommand});
[[maybe_unused]] const bool kIniDemoRegistered =
    RegisterDemoStep(70, "Settings files and saved window state", ShowSettings);

}  // namespace
}  // namespace qv::tool
