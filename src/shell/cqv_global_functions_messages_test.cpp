// The message members of CQVGlobalFunctions as a module calls them: by name,
// with optional arguments left out.
#include <gtest/gtest.h>

#include "com/class_factory.h"
#include "com/safe_array.h"
#include "testing/message_fakes.h"

namespace qv {
namespace {

TEST(GlobalFunctionsMessagesTest, ConvertHelpAndUnitByName) {
  testing::FakeAppContext app;
  testing::MessageBoxRecorder boxes;
  testing::HelpRecorder help;
  app.state().language = qvlEnglish;
  app.state().help_file = "/nonexistent/qv.chm";
  const ObjectPtr functions = CreateObject("qvglobal10.CQVGlobalFunctions");

  EXPECT_EQ(
      functions->Call("ConvertMsg", {"Vorlauf @@1,t@@@@1,001/Temperatur@@",
                                     SafeArray{Variant(343.15)}}),
      Variant("Vorlauf 70.0 °C"));

  functions->Call("CallHelpFile", {int32_t{60012}});
  EXPECT_TRUE(help.requests.empty());
  EXPECT_EQ(boxes.Texts(), std::vector<std::string>{
                               "Finde die Hilfedatei\r\n/nonexistent/qv.chm"
                               "\r\nnicht."});

  const ObjectPtr properties = CreateObject("QvCentral10.QvProperties");
  properties->Let("Property", "024/Volumenstrom");
  EXPECT_EQ(functions->Call("GetPrintUnitText", {int16_t{0}, properties}),
            Variant("m³/h"));
}

}  // namespace
}  // namespace qv
