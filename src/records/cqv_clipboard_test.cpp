#include "records/cqv_clipboard.h"

#include <gtest/gtest.h>

#include <thread>

#include "com/class_factory.h"
#include "com/variant.h"
#include "datasource/qv_recordset.h"
#include "datasource/record_clipboard.h"

namespace qv {
namespace {

std::shared_ptr<CQvClipboard> NewClipboard() {
  return CreateObjectAs<CQvClipboard>("qvglobal10.CQvClipboard");
}

TEST(CQvClipboardTest, HoldsARecordSetAndTheCutFlagByName) {
  const auto clipboard = NewClipboard();
  ASSERT_NE(clipboard, nullptr);
  EXPECT_TRUE(clipboard->Get("qvrs").IsNothing());
  EXPECT_EQ(clipboard->Get("Cut"), Variant(false));

  const auto rs = std::make_shared<ds::QvRecordset>();
  clipboard->Set("qvrs", rs);
  clipboard->Let("Cut", Variant(-1));  // any non-zero value is True
  EXPECT_EQ(clipboard->qvrs(), rs);
  EXPECT_EQ(clipboard->Get("qvrs"), Variant(rs));
  EXPECT_TRUE(clipboard->Cut());

  clipboard->Set("qvrs", nullptr);  // Nothing empties it; Cut stays
  EXPECT_TRUE(clipboard->Get("qvrs").IsNothing());
  EXPECT_EQ(clipboard->Get("Cut"), Variant(true));
}

TEST(CQvClipboardTest, CurrentClipboardIsPerThreadAndEmptiedByItsTable) {
  const auto clipboard = NewClipboard();
  SetCurrentClipboard(clipboard);
  EXPECT_EQ(CurrentClipboard(), clipboard);
  // Record sets reach the same clipboard through the data-source slot.
  const auto rs = std::make_shared<ds::QvRecordset>();  // table name ""
  clipboard->set_qvrs(rs);
  clipboard->set_Cut(true);
  ds::EmptyRecordClipboardOf("");
  EXPECT_EQ(clipboard->qvrs(), nullptr);
  EXPECT_TRUE(clipboard->Cut());

  std::shared_ptr<CQvClipboard> seen_elsewhere = clipboard;
  std::thread([&] { seen_elsewhere = CurrentClipboard(); }).join();
  EXPECT_EQ(seen_elsewhere, nullptr);
  SetCurrentClipboard(nullptr);
  EXPECT_EQ(CurrentClipboard(), nullptr);
}

}  // namespace
}  // namespace qv
