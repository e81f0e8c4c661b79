#include "modules/qv_modul_def.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "com/class_factory.h"
#include "com/error.h"
#include "com/safe_array.h"

namespace qv {
namespace {

TEST(CQvModulDefTest, FieldsByNameConvertAndCopyArrays) {
  ObjectPtr def = CreateObject("qvglobal10.CQvModulDef");
  EXPECT_TRUE(def->Get("m_aModuls").IsEmpty());
  EXPECT_EQ(def->Get("M_SSTARTSIZEWIDTH"), Variant(0.0f));

  SafeArray moduls = MakeStringArray({"VM", "EZ"});
  def->Let("m_aModuls", moduls);
  moduls[0] = "XX";  // the field holds its own copy
  EXPECT_EQ(def->Get("m_aModuls"), Variant(MakeStringArray({"VM", "EZ"})));

  def->Let("m_sStartSizeWidth", Variant("870.5"));
  EXPECT_EQ(def->Get("m_sStartSizeWidth"), Variant(870.5f));
  def->Let("m_eStartSize", Variant(int16_t{2}));
  EXPECT_EQ(std::dynamic_pointer_cast<CQvModulDef>(def)->m_eStartSize,
            mmssAbsolute);
  def->Let("m_bMulti", Variant(int32_t{-1}));
  EXPECT_EQ(def->Get("m_bMulti"), Variant(true));

  try {
    def->Get("m_sName");
    ADD_FAILURE() << "no error raised";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), err::kObjectDoesntSupport);
  }
}

}  // namespace
}  // namespace qv
