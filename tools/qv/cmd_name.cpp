// `qv name PATH...`: how the suite reads each path. A file path gives its
// module code, module instance name and whether it is a module file; a
// folder path (one that ends in a separator or names an existing folder)
// gives whether it is a project folder and, if so, the project name. A path
// whose name breaks the naming rules prints the library's text on standard
// error; the other paths are still read, and the command then fails.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "com/error.h"
#include "modules/cpr_func.h"
#include "platform/file_system.h"
#include "qv/command_registry.h"

namespace qv::tool {
namespace {

const char* YesNo(bool b) { return b ? "yes" : "no"; }

void PrintLine(std::ostream& out, const char* label, const std::string& value) {
  out << fmt::format("  {:<16} {}\n", label, value);
}

bool IsFolderPath(const std::string& path) {
  return (!path.empty() && (path.back() == '/' || path.back() == '\\')) ||
         platform::FileSystem::Current()->FolderExists(path);
}

// Prints what the naming rules say about `path`; raises their error when the
// file name holds no module code.
void DescribePath(std::ostream& out, const std::string& path) {
  const CPRFunc_t_ pr;
  out << path << '\n';
  if (IsFolderPath(path)) {
    const bool project = pr.IsPathProjectFolder(path);
    PrintLine(out, "project folder", YesNo(project));
    if (project) PrintLine(out, "project name", pr.PathToProjName(path));
    return;
  }
  PrintLine(out, "module code", pr.FileNameToModul(path));
  PrintLine(out, "module instance", pr.FileNameToModulName(path));
  PrintLine(out, "module file", YesNo(pr.IsQvFile(path)));
}

void DescribePaths(const std::vector<std::string>& paths) {
  // Each failure is printed as it happens, except the latest, which is held
  // back and raised at the end so that the tool exits with status 1.
  std::optional<Error> failure;
  for (const std::string& path : paths) {
    try {
      DescribePath(std::cout, path);
    } catch (const Error& e) {
      std::cout.flush();
      if (failure) std::cerr << failure->description() << '\n';
      failure = e;
    }
  }
  if (failure) throw *failure;
}

void AddNameCommand(CLI::App& app) {
  CLI::App* name = app.add_subcommand(
      "name", "Read module files and project folders by the naming rules");
  auto paths = std::make_shared<std::vector<std::string>>();
  name->add_option("PATH", *paths, "File or folder paths")->required();
  name->callback([paths] { DescribePaths(*paths); });
}

void ShowNaming(DemoContext& ctx) {
  const CPRFunc_t_ pr;
  for (const char* path :
       {"/home/p/Haus_A_VM.qv3", "C:\\P\\Müller_Haus_EZ.qv3"}) {
    ctx.out << fmt::format("  {} -> module \"{}\", instance \"{}\"\n", path,
                           pr.FileNameToModul(path),
                           pr.FileNameToModulName(path));
  }
  ctx.out << fmt::format("  ModulToFileName(\"Haus_A\", \"VM\") = \"{}\"\n",
                         pr.ModulToFileName("Haus_A", "VM"));
  const std::string project = pr.ProjNameToPath(ctx.folder.string(), "Haus");
  ctx.out << fmt::format(
      "  ProjNameToPath(<demo folder>, \"Haus\") ends in "
      "\"{}\"; project folder: {}\n",
      platform::FileSystem::GetFileName(project),
      YesNo(pr.IsPathProjectFolder(project)));
  ctx.out << fmt::format("  IsPathProjectFolder(\"C:\\X.qv3\\Y.qv3\") = {}\n",
                         YesNo(pr.IsPathProjectFolder("C:\\X.qv3\\Y.qv3")));
  try {
    pr.FileNameToModul("Haus.qv3");
  } catch (const Error& e) {
    ctx.out << fmt::format("  FileNameToModul(\"Haus.qv3\") fails: {}\n",
                           e.description());
  }
}

[[maybe_unused]] const bool kNameRegistered =
    RegisterCommand({"name", AddNameCommand});
[[maybe_unused]] const bool kNameDemoRegistered =
    RegisterDemoStep(41, "Project and module file naming", ShowNaming);

}  // namespace
}  // namespace qv::tool
