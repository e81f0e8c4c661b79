// `qv project new DIR NAME --modules VM,EZ,... [--catalog local|global]`:
// creates the project folder NAME.qv3 in DIR with one module database per
// module, each holding the version table and the project description.
#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <vector>

#include "com/error.h"
#include "data/qv_project.h"
#include "qv/command_registry.h"

namespace qv::tool {
namespace {

struct ProjectOptions {
  std::string dir;
  std::string name;
  std::vector<std::string> moduls;
  std::string catalog = "local";
};

void CreateProject(const ProjectOptions& o) {
  const QvDbCatalogType catalog =
      o.catalog == "global" ? QvDbCatalogTypeGlobal : QvDbCatalogTypeLocal;
  for (const std::string& file :
       CreateQvProject(o.dir, o.name, o.moduls, catalog)) {
    std::cout << file << '\n';
  }
}

void AddProjectCommand(CLI::App& app) {
  CLI::App* project = app.add_subcommand("project", "Project folders");
  project->require_subcommand(1);
  CLI::App* create = project->add_subcommand("new",
                                             "Create a project folder with its "
                                             "module databases");
  auto o = std::make_shared<ProjectOptions>();
  create->add_option("DIR", o->dir, "Folder to create the project in")
      ->required();
  create->add_option("NAME", o->name, "Project name")->required();
  create->add_option("--modules", o->moduls, "Module codes (VM,EZ,...)")
      ->delimiter(',')
      ->required();
  create->add_option("--catalog", o->catalog, "Where the catalogues are")
      ->check(CLI::IsMember({"local", "global"}));
  create->callback([o] { CreateProject(*o); });
}

[[maybe_unused]] const bool kRegistered =
    RegisterCommand({"project", AddProjectCommand});

}  // namespace
}  // namespace qv::tool
