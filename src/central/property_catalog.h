// PropertyCatalog is the suite's catalogue of physical quantities: for each
// quantity a three-digit number, its German and English name, the unit its
// values are given in (as stored in project files), the display unit with
// its German and English text, the conversion to the display unit (factor
// and offset) and the number of decimals shown. Message texts name a
// quantity by a reference such as "001/Temperatur": the number selects the
// entry, the name after the slash only documents it.
//
// The catalogue is a tab-separated text file (properties.tsv, installed with
// the library under share/qvglobal) read at run time, so that a company can
// add quantities without rebuilding. Default() reads, in this order, the file
// named by the environment variable QV_PROPERTIES_FILE, the installed file
// next to the library, or else the copy built into the library.
//
// Errors (qv::Error, number 0x800403E8 = -2147220504):
//   "QvProperties: cannot read '<file>'"          file missing or unreadable
//   "QvProperties: <file>, line <n>: <problem>"   a broken entry
//   "QvProperties: invalid property reference '<ref>'"
//   "QvProperties: unknown property '<ref>'"
//
// Threads: a loaded catalogue is immutable and may be read from any thread;
// Default() may be called from any thread.
#ifndef QVGLOBAL_CENTRAL_PROPERTY_CATALOG_H_
#define QVGLOBAL_CENTRAL_PROPERTY_CATALOG_H_

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "central/qv_language.h"

namespace qv::central {

struct PropertyDef {
  int number = 0;
  std::string name_de, name_en;
  std::string unit;  // the unit values are given in
  std::string unit_de, unit_en;
  double factor = 1;
  double offset = 0;
  int decimals = 0;

  // The name and the display unit's text in `language`; German unless the
  // language is English.
  const std::string& Name(QvLanguage_t_ language) const;
  const std::string& UnitText(QvLanguage_t_ language) const;
  // `value` converted to the display unit and rounded to the decimals, with
  // a decimal comma (German or no language) or point (English), no
  // thousands separators. Raises 6 "Overflow" for a value that is not finite.
  std::string Format(double value, QvLanguage_t_ language) const;
  // The reference text of the entry, e.g. "001/Temperatur".
  std::string Reference() const;
};

class PropertyCatalog {
 public:
  // Parses catalogue text; `source` names it in error messages.
  static PropertyCatalog Parse(std::string_view text, std::string source);
  // Reads and parses a catalogue file (UTF-8, or Windows-1252).
  static PropertyCatalog Load(const std::string& file);
  // The catalogue found by the rule above, read once per file name.
  static std::shared_ptr<const PropertyCatalog> Default();
  // The file Default() reads; "" when it uses the built-in copy.
  static std::string DefaultFile();

  // The entry a reference ("001/Temperatur", " 1/x") names by its number.
  const PropertyDef& Find(std::string_view reference) const;
  const PropertyDef* FindNumber(int number) const;

  const std::map<int, PropertyDef>& entries() const { return entries_; }
  const std::string& source() const { return source_; }

 private:
  void AddLine(std::string_view line, int line_number);

  std::string source_;
  std::map<int, PropertyDef> entries_;
};

}  // namespace qv::central

#endif  // QVGLOBAL_CENTRAL_PROPERTY_CATALOG_H_
