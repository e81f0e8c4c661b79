#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "com/class_factory.h"
#include "platform/display.h"
#include "shell/cqv_global_functions.h"
#include "testing/expect_error.h"

namespace qv {
namespace {

// A screen of a given size and colour depth.
class Screen : public platform::Display {
 public:
  Screen(int32_t width, int32_t height, int32_t bits, int32_t planes)
      : width_(width), height_(height), bits_(bits), planes_(planes) {}
  int32_t ScreenWidth() const override { return width_; }
  int32_t ScreenHeight() const override { return height_; }
  int32_t BitsPerPixel() const override { return bits_; }
  int32_t Planes() const override { return planes_; }
  platform::ScreenPoint GetCursorPos() const override { return {}; }
  void SetCursorPos(platform::ScreenPoint) override {}

 private:
  int32_t width_, height_, bits_, planes_;
};

class DisplayHelpersTest : public ::testing::Test {
 protected:
  ~DisplayHelpersTest() override { platform::Display::Reset(); }

  ObjectPtr Create() { return CreateObject("qvglobal10.CQVGlobalFunctions"); }
};

TEST_F(DisplayHelpersTest, FixedColoursAndLimitsAndTheRetiredIniFile) {
  const ObjectPtr fn = Create();
  const std::vector<std::pair<const char*, int32_t>> rows = {
      {"QvRoomlistSelectedItemBackColor", static_cast<int32_t>(0x8000000D)},
      {"QvRoomlistSelectedItemForeColor", static_cast<int32_t>(0x8000000E)},
      {"QvRoomlistUnselectedItemBackColor", static_cast<int32_t>(0x80000005)},
      {"QvRoomlistUnselectedItemForeColor", static_cast<int32_t>(0x80000012)},
      {"ActiveControlBackColor", 0xFFFFFF},
      {"ActiveTextColor", 0},
      {"InActiveTextColor", 0},
      {"SmallScreenWidth", 800},
      {"SmallScreenHeight", 600},
  };
  for (const auto& [member, value] : rows) {
    EXPECT_EQ(fn->Get(member), Variant(value)) << member;
  }
  EXPECT_TRUE(testing::RaisesError(
      [&] { fn->Call("GetQVIniFile"); }, -2147220504,
      "CQVGlobalFunctions: Die Methode GetQVIniFile wird nicht mehr untersützt",
      ""));
}

TEST_F(DisplayHelpersTest, InactiveBackgroundFollowsTheColourDepthOnce) {
  // {bits per pixel, planes, colour}: depth is their product.
  const std::vector<std::tuple<int32_t, int32_t, int32_t>> rows = {
      {1, 1, 0xC0C0C0},  {4, 1, 0xC0C0C0},  {8, 1, 0xC0C0C0},
      {1, 4, 0xC0C0C0},  {16, 1, 0xDCDCDC}, {24, 1, 0xDCDCDC},
      {32, 1, 0xDCDCDC}, {2, 1, 0xDCDCDC},  {4, 4, 0xDCDCDC},
  };
  for (const auto& [bits, planes, colour] : rows) {
    platform::Display::Install(
        std::make_shared<Screen>(1024, 768, bits, planes));
    EXPECT_EQ(Create()->Get("InActiveControlBackColor"), Variant(colour))
        << bits << " x " << planes;
  }
  // An object works the colours out on its first read of any of them.
  platform::Display::Install(std::make_shared<Screen>(1024, 768, 8, 1));
  const ObjectPtr fn = Create();
  fn->Get("ActiveTextColor");
  platform::Display::Install(std::make_shared<Screen>(1024, 768, 24, 1));
  EXPECT_EQ(fn->Get("InActiveControlBackColor"), Variant(0xC0C0C0));
}

TEST_F(DisplayHelpersTest, SmallScreenIsNarrowerOrLowerThanTheLimits) {
  const std::vector<std::tuple<int32_t, int32_t, bool>> rows = {
      {800, 600, false}, {799, 600, true},    {800, 599, true},
      {640, 480, true},  {1920, 1080, false}, {2000, 500, true},
  };
  for (const auto& [width, height, small] : rows) {
    platform::Display::Install(std::make_shared<Screen>(width, height, 24, 1));
    EXPECT_EQ(Create()->Call("IsSmallScreen"), Variant(small))
        << width << " x " << height;
  }
}

}  // namespace
}  // namespace qv
