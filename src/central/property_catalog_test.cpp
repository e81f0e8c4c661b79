// The property catalogue: conversions and rounding in both languages, the
// catalogue file and its errors, where the catalogue is found, and the
// properties object by name.
#include "central/property_catalog.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "central/internal/builtin_properties.h"
#include "central/qv_properties.h"
#include "com/class_factory.h"
#include "testing/expect_error.h"
#include "testing/run_tool.h"
#include "testing/scoped_env.h"
#include "testing/temp_dir.h"

namespace qv::central {
namespace {

using ::qv::testing::RaisesError;

constexpr int32_t kError1000 = -2147220504;
// The catalogue file as shipped in the source tree.
std::string SourceFile() {
  return std::string(::qv::testing::SourceDir()) +
         "/src/central/properties.tsv";
}

constexpr char kVariable[] = "QV_PROPERTIES_FILE";

TEST(PropertyCatalogTest, ConvertsAndRoundsInBothLanguages) {
  const PropertyCatalog catalog = PropertyCatalog::Load(SourceFile());
  const struct {
    const char* reference;
    double value;
    const char* german;
    const char* english;
    const char* unit;
  } cases[] = {
      {"001/Temperatur", 293.15, "20,0", "20.0", "°C"},
      {"001/Temperatur", 0, "-273,2", "-273.2", "°C"},
      {"002/Temperaturdifferenz", -0.04, "0,0", "0.0", "K"},
      {"004/Heizlast", 12345, "12,35", "12.35", "kW"},
      {"012/Länge", -1.005, "-1,01", "-1.01", "m"},
      {"014/mm", 0.0125, "13", "13", "mm"},
      {"024/Volumenstrom", 0.5, "1800,0", "1800.0", "m³/h"},
      {"025/l/s", 0.0015, "1,50", "1.50", "l/s"},
      {"026/Druck", 1234567.4, "1234567", "1234567", "Pa"},
      {"028/bar", 250000, "2,50", "2.50", "bar"},
      {"033/Luftwechsel", 1.0 / 3600, "1,00", "1.00", "1/h"},
      {"034/rel. Feuchte", 0.555, "56", "56", "%"},
      {"041/Kosten", 2.675, "2,68", "2.68", "EUR"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.reference);
    const PropertyDef& def = catalog.Find(c.reference);
    EXPECT_EQ(def.Format(c.value, qvlNoLanguage), c.german);
    EXPECT_EQ(def.Format(c.value, qvlGerman), c.german);
    EXPECT_EQ(def.Format(c.value, qvlEnglish), c.english);
    EXPECT_EQ(def.UnitText(qvlEnglish), c.unit);
  }
  EXPECT_EQ(catalog.Find(" 1/Temperatur").Name(qvlEnglish), "Temperature");
  EXPECT_EQ(catalog.Find("001/anders benannt").Name(qvlGerman), "Temperatur");
  for (const char* bad : {"/ohne Nummer", "x01/Temperatur", ""}) {
    EXPECT_TRUE(RaisesError([&] { catalog.Find(bad); }, kError1000,
                            std::string("QvProperties: invalid property "
                                        "reference '") +
                                bad + "'"));
  }
  EXPECT_TRUE(RaisesError([&] { catalog.Find("999/Neu"); }, kError1000,
                          "QvProperties: unknown property '999/Neu'"));
}

TEST(PropertyCatalogTest, BrokenEntriesNameFileAndLine) {
  const std::string good = "001\tA\tB\tK\t°C\t°C\t1\t-273.15\t1";
  const struct {
    std::string text;
    const char* problem;
  } cases[] = {
      {"001\tA\tB\tK\t°C\t°C\t1\t0",
       "line 1: expected 9 tab-separated fields, found 8"},
      {"# Kommentar\n\n01\tA\tB\tK\tK\tK\t1\t0\t1",
       "line 3: the number '01' is not three digits"},
      {good + "\n" + good, "line 2: the number 001 is given twice"},
      {"002\tA\t\tK\tK\tK\t1\t0\t1", "line 1: a name or the unit is missing"},
      {"002\tA\tB\tK\tK\tK\t0\t0\t1",
       "line 1: the factor '0' is not a non-zero number"},
      {"002\tA\tB\tK\tK\tK\tzwei\t0\t1",
       "line 1: the factor 'zwei' is not a non-zero number"},
      {"002\tA\tB\tK\tK\tK\t1\t?\t1", "line 1: the offset '?' is not a number"},
      {"002\tA\tB\tK\tK\tK\t1\t0\t10",
       "line 1: the decimals '10' are not a number from 0 to 9"},
  };
  for (const auto& c : cases) {
    EXPECT_TRUE(RaisesError(
        [&] { PropertyCatalog::Parse(c.text, "firma.tsv"); }, kError1000,
        std::string("QvProperties: firma.tsv, ") + c.problem))
        << c.text;
  }
}

TEST(PropertyCatalogTest, BuiltInCopyIsTheShippedFile) {
  const PropertyCatalog shipped = PropertyCatalog::Load(SourceFile());
  const PropertyCatalog built_in =
      PropertyCatalog::Parse(internal::kBuiltinProperties, "built-in");
  EXPECT_GE(shipped.entries().size(), 40u);
  ASSERT_EQ(built_in.entries().size(), shipped.entries().size());
  for (const auto& [number, def] : shipped.entries()) {
    EXPECT_EQ(built_in.FindNumber(number)->Reference(), def.Reference());
  }
  // Without the variable the library reads the copy installed beside it.
  const std::string file = PropertyCatalog::DefaultFile();
  EXPECT_TRUE(file.ends_with("share/qvglobal/properties.tsv")) << file;
  EXPECT_EQ(PropertyCatalog::Default()->entries().size(),
            shipped.entries().size());
}

TEST(PropertyCatalogTest, VariableNamesACompanysOwnCatalogue) {
  ::qv::testing::TempDir dir;
  const std::string file = dir.File("firma.tsv");
  // Windows-1252 text, as older editors save it: "Wärme" with 0xE4.
  std::ofstream(file) << "900\tW\xE4rmeleistung\tHeat output\tW\tkW\tkW\t0.001"
                         "\t0\t1\r\n";
  {
    ::qv::testing::ScopedEnv variable(kVariable, file);
    const auto catalog = PropertyCatalog::Default();
    EXPECT_EQ(catalog->source(), file);
    EXPECT_EQ(catalog->Find("900").name_de, "Wärmeleistung");
    EXPECT_EQ(catalog->Find("900").Format(1250, qvlGerman), "1,3");
    EXPECT_EQ(catalog->FindNumber(1), nullptr);
  }
  ::qv::testing::ScopedEnv missing(kVariable, dir.File("fehlt.tsv"));
  EXPECT_TRUE(
      RaisesError([] { PropertyCatalog::Default(); }, kError1000,
                  "QvProperties: cannot read '" + dir.File("fehlt.tsv") + "'"));
}

TEST(QvPropertiesTest, FormatsByName) {
  const ObjectPtr p = CreateObject("QvCentral10.QvProperties");
  EXPECT_TRUE(RaisesError([&] { p->Get("Text"); }, 91,
                          "Object variable or With block variable not set"));
  p->Let("Property", "001/Vorlauftemperatur");
  p->Let("Value", "343.15");
  EXPECT_EQ(p->Get("Property"), Variant("001/Temperatur"));
  EXPECT_EQ(p->Get("Text"), Variant("70,0"));
  p->Let("Language", int32_t{qvlEnglish});
  p->Let("Value", 343.2);
  EXPECT_EQ(p->Get("Text"), Variant("70.1"));
  EXPECT_EQ(p->Get("UnitText"), Variant("°C"));
  EXPECT_TRUE(
      RaisesError([&] { p->Let("Value", "warm"); }, 13, "Type mismatch"));
}

}  // namespace
}  // namespace qv::central
