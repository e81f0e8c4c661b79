// `qv modules [CODE]`: without an argument the module table, one row per
// module in table order, in aligned columns; with a module code (letter case
// ignored) every field of that module's record. An unknown code fails with
// the module table's own not-found text.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "com/dictionary.h"
#include "com/error.h"
#include "com/safe_array.h"
#include "com/text.h"
#include "modules/cqv_modul_defs.h"
#include "modules/qv_modul_def.h"
#include "qv/command_registry.h"

namespace qv::tool {
namespace {

using Row = std::vector<std::string>;

std::string StartSizeName(int32_t size) {
  static const char* const kNames[] = {"mmssFull", "mmssRelative",
                                       "mmssAbsolute", "mmssStartAlgo1"};
  return size >= 0 && size < 4 ? kNames[size] : std::to_string(size);
}

// A field value as text: arrays as their elements joined by ",".
std::string FieldText(const Variant& value) {
  if (!value.IsArray()) return value.ToString();
  std::vector<std::string> items;
  for (const Variant& item : value.ToArray()) items.push_back(item.ToString());
  return fmt::format("{}", fmt::join(items, ","));
}

std::string StartSizeText(const CQvModulDef& def) {
  std::string text = StartSizeName(def.m_eStartSize);
  if (def.m_sStartSizeWidth != 0 || def.m_sStartSizeHeight != 0) {
    text += fmt::format(" {}x{}", FieldText(def.m_sStartSizeWidth),
                        FieldText(def.m_sStartSizeHeight));
  }
  return text;
}

Row TableRow(const CQvModulDef& def) {
  return {def.m_sExtension,
          std::to_string(def.m_eModul),
          def.m_sDescription,
          def.m_sQvSpecDesc,
          def.m_bMulti ? "yes" : "no",
          FieldText(def.m_aModuls),
          FieldText(def.m_aCatalogs),
          def.m_sRLTCalcModulClass,
          StartSizeText(def)};
}

// Prints rows with every column as wide as its widest cell (in characters,
// so that umlauts line up), two blanks between columns.
void PrintAligned(const std::vector<Row>& rows) {
  std::vector<size_t> widths;
  for (const Row& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (size_t c = 0; c < row.size(); ++c) {
      widths[c] = std::max(widths[c], text::Len(row[c]));
    }
  }
  for (const Row& row : rows) {
    std::string line;
    for (size_t c = 0; c < row.size(); ++c) {
      line += row[c];
      if (c + 1 < row.size()) {
        line += std::string(widths[c] - text::Len(row[c]) + 2, ' ');
      }
    }
    std::cout << text::RTrim(line) << '\n';
  }
}

void PrintTable() {
  std::vector<Row> rows = {{"Code", "Enum", "Description",
                            "Special description", "Multi", "Modules",
                            "Catalogues", "Calculation class", "Start size"}};
  const SafeArray all = CQvModulDefs().GetArrayQvModulDefs();
  for (const Variant& def : all) {
    rows.push_back(TableRow(*def.ToObjectAs<CQvModulDef>()));
  }
  PrintAligned(rows);
}

// Every field of one record, by name in declaration order.
void PrintModule(const std::string& code) {
  const std::shared_ptr<CQvModulDef> def = CQvModulDefs().GetQvModulDef(code);
  std::vector<Row> rows;
  for (const MemberInfo& field : def->GetClassInfo().members()) {
    std::string value = FieldText(def->Get(field.name));
    if (text::EqualsText(field.name, "m_eStartSize")) {
      value += " (" + StartSizeName(def->m_eStartSize) + ")";
    }
    rows.push_back({field.name, value});
  }
  PrintAligned(rows);
}

void AddModulesCommand(CLI::App& app) {
  CLI::App* modules = app.add_subcommand(
      "modules", "Print the module table, or every field of one module");
  auto code = std::make_shared<std::string>();
  modules->add_option("CODE", *code, "A module code such as VM");
  modules->callback([code] {
    if (code->empty()) {
      PrintTable();
    } else {
      PrintModule(*code);
    }
  });
}

void ShowModuleTable(DemoContext& ctx) {
  CQvModulDefs defs;
  ctx.out << fmt::format("  StrToModul(\"EZ\") = {}\n", defs.StrToModul("EZ"));
  ctx.out << fmt::format("  GetModulDescription(\"ce\") = \"{}\"\n",
                         defs.GetModulDescription("ce"));
  ctx.out << fmt::format("  GetCatalogs(\"CE\") = {}\n",
                         FieldText(defs.GetCatalogs("CE")));
  ctx.out << fmt::format("  IsMultiProjectModul(\"lp\") = {}\n",
                         Variant(defs.IsMultiProjectModul("lp")).ToString());
  ctx.out << fmt::format("  IsProjectDBModul(\"EZ\") = {}\n",
                         Variant(defs.IsProjectDBModul("EZ")).ToString());
  ctx.out << fmt::format("  GetAllModulExtensions() = {}\n",
                         FieldText(defs.GetAllModulExtensions()->Keys()));
  ctx.out << fmt::format("  BuildDBName(\"Haus_A\", QvModulVM) = \"{}\"\n",
                         defs.BuildDBName("Haus_A", QvModulVM));
  try {
    defs.GetExtension(QvModulXo);
  } catch (const Error& e) {
    ctx.out << fmt::format("  GetExtension(8) fails: {}\n", e.description());
  }
}

[[maybe_unused]] const bool kModulesRegistered =
    RegisterCommand({"modules", AddModulesCommand});
[[maybe_unused]] const bool kModulesDemoRegistered =
    RegisterDemoStep(40, "Module table", ShowModuleTable);

}  // namespace
}  // namespace qv::tool
