// `qv db info|compact|clear|check FILE`: inspecting and maintaining one
// project or catalogue database.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <string>

#include "com/error.h"
#include "data/cqv_db_container.h"
#include "datasource/db_connection.h"
#include "datasource/db_maintenance.h"
#include "qv/command_registry.h"
#include "qv/db_report.h"
#include "qv/tool_text.h"

namespace qv::tool {
namespace {

// A progress bar on a terminal, nothing otherwise.
class ProgressBar {
 public:
  ProgressBar() : enabled_(::isatty(STDOUT_FILENO) != 0) {}
  ~ProgressBar() {
    if (drawn_) std::cout << '\n';
  }
  void Draw(uint64_t written, uint64_t total) {
    if (!enabled_ || total == 0) return;
    const int percent =
        static_cast<int>(std::min<uint64_t>(100, written * 100 / total));
    if (drawn_ && percent == percent_) return;
    percent_ = percent;
    drawn_ = true;
    const int filled = percent * 30 / 100;
    std::cout << "\r[" << std::string(static_cast<size_t>(filled), '#')
              << std::string(static_cast<size_t>(30 - filled), ' ') << "] "
              << percent << "%" << std::flush;
  }

 private:
  bool enabled_;
  bool drawn_ = false;
  int percent_ = -1;
};

void Compact(const std::string& file) {
  ProgressBar bar;
  CQvDbContainer().compactQvProjectConnection(
      file,
      [&bar](uint64_t written, uint64_t total) { bar.Draw(written, total); });
}

// Exit status 1 when the check finds a fault.
void Check(const std::string& file) {
  std::shared_ptr<ds::DbConnection> con;
  CQvDbContainer container;
  container.openConnection(con, file);
  const std::vector<std::string> faults = ds::CheckDatabase(*con);
  container.closeConnection(con);
  for (const std::string& fault : faults) {
    std::cout << EscapeControls(fault) << '\n';
  }
  if (!faults.empty()) {
    throw Error::Object1000(std::to_string(faults.size()) +
                            " fault(s) found in " + file);
  }
  std::cout << "ok\n";
}

void AddFileCommand(CLI::App& db, const char* name, const char* help,
                    std::function<void(const std::string&)> run) {
  CLI::App* sub = db.add_subcommand(name, help);
  auto file = std::make_shared<std::string>();
  sub->add_option("FILE", *file, "Database file")->required();
  sub->callback([file, run] { run(*file); });
}

void AddDbCommand(CLI::App& app) {
  CLI::App* db = app.add_subcommand("db", "Project and catalogue databases");
  db->require_subcommand(1);
  AddFileCommand(*db, "info", "Tables, versions, keys and relations",
                 [](const std::string& f) { PrintDatabaseInfo(f, std::cout); });
  AddFileCommand(*db, "compact", "Compact the file in place", Compact);
  AddFileCommand(
      *db, "clear", "Delete all records but the versions",
      [](const std::string& f) { CQvDbContainer().ClearAllTables(f); });
  AddFileCommand(*db, "check", "Integrity and foreign-key check", Check);
}

[[maybe_unused]] const bool kRegistered = RegisterCommand({"db", AddDbCommand});

}  // namespace
}  // namespace qv::tool
