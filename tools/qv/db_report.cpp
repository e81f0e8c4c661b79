#include "qv/db_report.h"

#include <fmt/format.h>

#include <set>

#include "com/text.h"
#include "data/cqv_connection.h"
#include "data/cqv_db_container.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "qv/tool_text.h"

namespace qv::tool {
namespace {

// Names come from the file: escaped for the terminal.
std::string Join(const std::vector<std::string>& items) {
  std::string joined;
  for (const std::string& item : items) {
    joined += (joined.empty() ? "" : ", ") + EscapeControls(item);
  }
  return joined;
}

const char* Rule(int32_t rule) { return rule == 1 ? "cascade" : "no action"; }

void PrintRelations(ds::DbCatalog& catalog,
                    const std::vector<std::string>& tables, std::ostream& out) {
  out << "Relations:\n";
  bool any = false;
  for (const std::string& table : tables) {
    for (const ds::ForeignKeyDef& fk : catalog.ForeignKeys(table)) {
      std::vector<std::string> pairs;
      for (const auto& [column, related] : fk.columns) {
        pairs.push_back(column + " = " + fk.related_table + "." + related);
      }
      out << fmt::format("  {} -> {} [{}] ({}; update {}, delete {})\n",
                         EscapeControls(fk.related_table),
                         EscapeControls(table), EscapeControls(fk.name),
                         Join(pairs), Rule(fk.update_rule),
                         Rule(fk.delete_rule));
      any = true;
    }
  }
  if (!any) out << "  none\n";
}

}  // namespace

void PrintDatabaseInfo(const std::string& file, std::ostream& out) {
  CQvDbContainer container;
  auto con = container.getQvProjectConnection(file);
  ds::DbCatalog catalog(*con->m_conConnection);
  const std::vector<std::string> tables = catalog.Tables();
  std::set<std::string> lower;
  for (const std::string& t : tables) lower.insert(text::LCase(t));

  out << "Database " << EscapeControls(con->m_conConnection->Path()) << '\n'
      << fmt::format("Connection version {}, database size {}\n",
                     con->getConnectionVersion(), con->getDatabaseSize())
      << "Logical tables:\n";
  std::vector<std::string> others;
  for (const std::string& t : tables) {
    const std::string name = text::LCase(t);
    const bool data_table = name.size() > 2 &&
                            name.compare(name.size() - 2, 2, "_t") == 0 &&
                            lower.count(name.substr(0, name.size() - 2));
    if (data_table) continue;
    if (!lower.count(name + "_t")) {
      others.push_back(t);
      continue;
    }
    out << fmt::format("  {:<16} version {:<4} keys {}\n", EscapeControls(t),
                       con->getTableVersion(t), Join(catalog.PrimaryKey(t)));
  }
  out << "Other tables: " << (others.empty() ? "none" : Join(others)) << '\n';
  PrintRelations(catalog, tables, out);
  container.closeQvConnection(con);
}

}  // namespace qv::tool
