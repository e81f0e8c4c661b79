// ConvertMsg, CallHelpFile and GetPrintUnitText through their public
// functions, with message boxes and help requests captured by fakes.
#include "messages/convert_msg.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "com/collection.h"
#include "com/error.h"
#include "testing/expect_error.h"
#include "testing/message_fakes.h"

namespace qv {
namespace {

using ::qv::testing::FakeAppContext;
using ::qv::testing::HelpRecorder;
using ::qv::testing::MessageBoxRecorder;
using ::qv::testing::RaisesError;

// The text of the box ConvertMsg shows for an error while converting `msg`.
std::string Box(const std::string& description, const std::string& msg) {
  return "mQVMessages->ConvertMsg: " + description + "\r\nNachricht: ''" + msg +
         "''";
}

std::shared_ptr<Collection> MakeCollection(std::vector<Variant> items) {
  auto list = std::make_shared<Collection>();
  for (Variant& item : items) list->Add(std::move(item));
  return list;
}

struct ConversionCase {
  const char* what;
  std::string msg;
  SafeArray values;
  std::string expected;
  std::vector<std::string> errors;  // descriptions, one box each
};

// The description of the error for a placeholder number without a value.
std::string NoValue(int n) {
  return "Für den Index " + std::to_string(n) +
         " konnte kein Platzhalter-Wert \r\nim Übergabeparameter "
         "ValuePlatzHalter gefunden werden";
}

const char kPropertyCount[] =
    "Die Anzahl der Formatierungs-Teilstrings im Ausgabestring\r\n"
    "1,001/Temperatur,2,002/x\r\nist kleiner als die Anzahl der \r\n"
    "QvProperties im QvProperties-Teilstring.";

std::vector<ConversionCase> ConversionCases() {
  return {
      {"plain text", "Keine Platzhalter", {}, "Keine Platzhalter", {}},
      {"empty text", "", {}, "", {}},
      {"line breaks in both cases",
       "Zeile 1@@n@@Zeile 2@@N@@Zeile 3",
       {},
       "Zeile 1\r\nZeile 2\r\nZeile 3",
       {}},
      {"values from the array itself",
       "Raum @@1, Raumname@@ hat @@2,Anzahl@@ Fenster, U @@3,x@@",
       {Variant("R12"), Variant(int32_t{3}), Variant(1.5)},
       "Raum R12 hat 3 Fenster, U 1.5",
       {}},
      {"number 0 and below give nothing",
       "a@@0, nichts@@b@@-2,x@@c",
       {},
       "abc",
       {}},
      {"values from a collection",
       "@@1,x@@/@@2,y@@",
       {Variant(MakeCollection({Variant("c1"), Variant("c2")}))},
       "c1/c2",
       {}},
      {"values from an inner array",
       "@@1,x@@/@@2,y@@",
       {Variant(SafeArray{Variant("a1"), Variant("a2")})},
       "a1/a2",
       {}},
      {"inner array too short falls back to the array itself",
       "@@2,x@@",
       {Variant(SafeArray{Variant("a1")}), Variant("b")},
       "b",
       {}},
      {"odd number of markers",
       "a@@b",
       {},
       "a",
       {"Anzahl der Platzhalter @@ ist nicht durch 2 teilbar!",
        "Der ValuePlatzHalter b enthält kein ','. Syntaxerror!",
        "Im ValuePlatzHalter b ist kein ValuePlatzHalterNummer angeben",
        "Type mismatch"}},
      {"placeholder without comma still finds its value",
       "a@@1@@b",
       {Variant("v")},
       "avb",
       {"Der ValuePlatzHalter 1 enthält kein ','. Syntaxerror!"}},
      {"number part not numeric",
       "a@@x,y@@b",
       {Variant("v")},
       "ab",
       {"Im ValuePlatzHalter x,y ist kein ValuePlatzHalterNummer angeben",
        "Type mismatch"}},
      {"number beyond 16 bits",
       "a@@70000,x@@b",
       {Variant("v")},
       "ab",
       {"Overflow"}},
      {"no value for the number",
       "@@2,x@@!",
       {Variant("v")},
       "!",
       {NoValue(2)}},
      {"no values at all", "@@1,x@@", {}, "", {NoValue(1)}},
      {"Null value leaves the placeholder",
       "[@@1,x@@]",
       {Variant(kNull)},
       "[1,x]",
       {"Invalid use of Null"}},
      {"inner array not 0-based",
       "@@1,x@@",
       {Variant(SafeArray({Variant("a")}, 1))},
       "",
       {"Der Array im Parameter ValuePlatzHalter ist nicht 0-basierent.",
        "Subscript out of range", NoValue(1)}},
      {"property list, text after it dropped",
       "Raum zu kalt: @@1,Temperatur@@@@1,001/Temperatur@@ verloren",
       {Variant(291.15)},
       "Raum zu kalt: 18,0 °C",
       {}},
      {"property list longer than the text",
       "a@@1,001/Temperatur,2,002/x@@",
       {Variant(1.0)},
       "a",
       {kPropertyCount}},
      {"no entry for the number, entry not numeric",
       "@@2,x@@@@1,001/Temperatur,b@@",
       {Variant(1.0), Variant(2.0)},
       "2,x",
       {"Im QvProperties wurde die Zeichenfolge 'b' gefunden, die keiner "
        "Zahl entspricht",
        "Konnte zu den Index '2' keinen Index in den \r\nin den QvProperties "
        "finden."}},
      {"unknown property",
       "@@1,x@@@@1,999/Unbekannt@@",
       {Variant(1.0)},
       "1,x",
       {"QvProperties: unknown property '999/Unbekannt'"}},
  };
}

TEST(ConvertMsgTest, MarkupValuesAndErrors) {
  FakeAppContext app;
  for (const ConversionCase& c : ConversionCases()) {
    SCOPED_TRACE(c.what);
    MessageBoxRecorder boxes;
    EXPECT_EQ(ConvertMsg(c.msg, c.values), c.expected);
    std::vector<std::string> expected_boxes;
    for (const std::string& e : c.errors)
      expected_boxes.push_back(Box(e, c.msg));
    EXPECT_EQ(boxes.Texts(), expected_boxes);
    for (const auto& box : boxes.shown) {
      EXPECT_EQ(box.title, "qv-software");
      EXPECT_EQ(box.style, 16);
    }
  }
}

TEST(ConvertMsgTest, QuantitiesFollowTheApplicationLanguage) {
  FakeAppContext app;
  MessageBoxRecorder boxes;
  const std::string msg = "U = @@1,U@@ (@@2,dp@@)@@1,015/U-Wert,2,031/R@@";
  const SafeArray values{Variant(3.4), Variant(12.25)};
  const struct {
    QvLanguage_t_ language;
    const char* expected;
  } cases[] = {
      {qvlGerman, "U = 3,40 W/(m²·K) (12,3 Pa/m)"},
      {qvlEnglish, "U = 3.40 W/(m²·K) (12.3 Pa/m)"},
  };
  for (const auto& c : cases) {
    app.state().language = c.language;
    EXPECT_EQ(ConvertMsg(msg, values), c.expected) << c.language;
  }
  EXPECT_TRUE(boxes.shown.empty());
}

TEST(CallHelpFileTest, ApplicationsFileAndWindowUnlessGivenMissingFileInABox) {
  ::qv::testing::HelpFileScene scene(4711);
  CallHelpFile(60012);
  CallHelpFile(7, 99, scene.file);
  const std::string missing = scene.dir.File("none.chm");
  CallHelpFile(5, 0, missing);
  EXPECT_EQ(scene.help.requests,
            (std::vector<HelpRecorder::Request>{{scene.file, 60012, 4711},
                                                {scene.file, 7, 99}}));
  ASSERT_EQ(scene.boxes.shown.size(), 1u);
  EXPECT_EQ(scene.boxes.shown[0].text,
            "Finde die Hilfedatei\r\n" + missing + "\r\nnicht.");
  EXPECT_EQ(scene.boxes.shown[0].title, "qv-software");
  EXPECT_EQ(scene.boxes.shown[0].style, 16);
}

TEST(GetPrintUnitTextTest, UnitOfTheSelectedQuantityForIndex0Only) {
  EXPECT_TRUE(RaisesError([&] { GetPrintUnitText(0, nullptr); }, 91,
                          "Object variable or With block variable not set"));
  auto properties = std::make_shared<central::QvProperties>();
  properties->SetProperty("036/Enthalpie");
  EXPECT_EQ(GetPrintUnitText(0, properties), Variant("kJ/kg"));
  EXPECT_TRUE(RaisesError([&] { GetPrintUnitText(1, properties); }, 5,
                          "Invalid procedure call or argument"));
}

}  // namespace
}  // namespace qv
