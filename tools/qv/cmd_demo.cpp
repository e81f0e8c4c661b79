// `qv demo [--dir DIR]`: a short guided tour of the library. It runs the
// registered demonstration steps in order, each under a heading, in a fresh
// temporary folder that is removed at the end, or in DIR, which is created
// if needed and kept with whatever the steps left in it.
#include <fmt/format.h>
#include <stdlib.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>

#include "com/error.h"
#include "qv/command_registry.h"

namespace qv::tool {
namespace {

namespace fs = std::filesystem;

// The folder the demonstration works in; a temporary one is removed, with
// everything in it, when the object goes.
class DemoFolder {
 public:
  explicit DemoFolder(const std::string& dir)
      : path_(dir.empty() ? MakeTemporary() : fs::absolute(dir)),
        temporary_(dir.empty()) {
    if (!temporary_) fs::create_directories(path_);
  }
  ~DemoFolder() {
    std::error_code ignored;
    if (temporary_) fs::remove_all(path_, ignored);
  }
  DemoFolder(const DemoFolder&) = delete;
  DemoFolder& operator=(const DemoFolder&) = delete;

  const fs::path& path() const { return path_; }
  bool temporary() const { return temporary_; }

 private:
  static fs::path MakeTemporary() {
    std::string pattern =
        (fs::temp_directory_path() / "qv-demo-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
      throw Error::Runtime(err::kPathNotFound);
    }
    return pattern;
  }

  fs::path path_;
  bool temporary_;
};

void RunDemo(const std::string& dir) {
  const DemoFolder folder(dir);
  std::ostream& out = std::cout;
  out << "qv demo in " << folder.path().string()
      << (folder.temporary() ? " (temporary, removed at the end)\n" : "\n");
  DemoContext ctx{folder.path(), out};
  int number = 0;
  for (const DemoStep& step : RegisteredDemoSteps()) {
    out << fmt::format("\n{}. {}\n", ++number, step.title);
    step.run(ctx);
  }
  out << "\nDone.\n";
}

void AddDemoCommand(CLI::App& app) {
  CLI::App* demo =
      app.add_subcommand("demo", "Run a short tour of the library");
  auto dir = std::make_shared<std::string>();
  demo->add_option("--dir", *dir,
                   "Work in DIR and keep the results (default: a temporary "
                   "folder that is removed)");
  demo->callback([dir] { RunDemo(*dir); });
}

[[maybe_unused]] const bool kDemoRegistered =
    RegisterCommand({"demo", AddDemoCommand});

}  // namespace
}  // namespace qv::tool
