// Runs the built qv tool's `msg` command and checks its exact output and
// exit status.
#include <gtest/gtest.h>

#include <string>

#include "testing/run_tool.h"

#ifdef QVGLOBAL_QV_TOOL

namespace qv {
namespace {

using ::qv::testing::RunQv;
using ::qv::testing::ToolRun;

TEST(QvMsgToolTest, ConvertsTextsWithValuesAndQuantities) {
  const struct {
    const char* args;
    const char* out;
  } cases[] = {
      {"msg 'Finde die Hilfedatei@@n@@@@1, Pfad@@@@n@@nicht.' /x/h.chm",
       "Finde die Hilfedatei\n/x/h.chm\nnicht.\n"},
      {"msg 'Raum @@1,r@@: @@2,t@@@@1,001/Temperatur,2,004/Heizlast@@' "
       "293.15 1250",
       "Raum 20,0 °C: 1,25 kW\n"},
      {"msg --lang en '@@1,t@@@@1,001/Temperatur@@' 293.15", "20.0 °C\n"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(RunQv(c.args), (ToolRun{0, c.out, ""})) << c.args;
  }
}

TEST(QvMsgToolTest, FaultyTextPrintsTheBoxes) {
  EXPECT_EQ(RunQv("msg 'a@@2,x@@b' eins"),
            (ToolRun{1, "",
                     "mQVMessages->ConvertMsg: Für den Index 2 konnte kein "
                     "Platzhalter-Wert \nim Übergabeparameter "
                     "ValuePlatzHalter gefunden werden\nNachricht: "
                     "''a@@2,x@@b''\n"}));
}

TEST(QvMsgToolTest, PropertiesListOrOneEntry) {
  EXPECT_EQ(RunQv("msg --properties 001"),
            (ToolRun{0,
                     "number     001\nname       Temperatur / Temperature\n"
                     "unit       K\ndisplay    °C / °C\n"
                     "conversion value * 1 + -273.15\ndecimals   1\n",
                     ""}));
  const ToolRun all = RunQv("msg --properties");
  EXPECT_EQ(all.status, 0);
  EXPECT_NE(all.out.find("\n047  Schalldruckpegel"), std::string::npos)
      << all.out;
}

}  // namespace
}  // namespace qv

#endif  // QVGLOBAL_QV_TOOL
