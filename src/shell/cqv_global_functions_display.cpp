// Display helpers of CQVGlobalFunctions.
#include <string>

#include "com/error.h"
#include "platform/display.h"
#include "shell/cqv_global_functions.h"

namespace qv {
namespace {

// A system colour reference: 0x80000000 + the system colour index.
constexpr int32_t SystemColour(int32_t index) {
  return static_cast<int32_t>(0x80000000u + static_cast<uint32_t>(index));
}
constexpr int32_t Rgb(int32_t red, int32_t green, int32_t blue) {
  return red + green * 0x100 + blue * 0x10000;
}

constexpr int32_t kHighlight = 13;
constexpr int32_t kHighlightText = 14;
constexpr int32_t kWindow = 5;
constexpr int32_t kButtonText = 18;
constexpr int32_t kSmallScreenWidth = 800;
constexpr int32_t kSmallScreenHeight = 600;

}  // namespace

int32_t CQVGlobalFunctions::QvRoomlistSelectedItemBackColor() const {
  return SystemColour(kHighlight);
}
int32_t CQVGlobalFunctions::QvRoomlistSelectedItemForeColor() const {
  return SystemColour(kHighlightText);
}
int32_t CQVGlobalFunctions::QvRoomlistUnselectedItemBackColor() const {
  return SystemColour(kWindow);
}
int32_t CQVGlobalFunctions::QvRoomlistUnselectedItemForeColor() const {
  return SystemColour(kButtonText);
}

void CQVGlobalFunctions::SetUpColours() {
  if (inactive_back_colour_) return;
  const auto display = platform::Display::Current();
  const int32_t depth = display->BitsPerPixel() * display->Planes();
  const bool few_colours = depth == 1 || depth == 4 || depth == 8;
  inactive_back_colour_ = few_colours ? Rgb(192, 192, 192) : Rgb(220, 220, 220);
}

int32_t CQVGlobalFunctions::ActiveControlBackColor() {
  SetUpColours();
  return Rgb(255, 255, 255);
}
int32_t CQVGlobalFunctions::InActiveControlBackColor() {
  SetUpColours();
  return *inactive_back_colour_;
}
int32_t CQVGlobalFunctions::ActiveTextColor() {
  SetUpColours();
  return 0;
}
int32_t CQVGlobalFunctions::InActiveTextColor() {
  SetUpColours();
  return 0;
}

int32_t CQVGlobalFunctions::SmallScreenWidth() const {
  return kSmallScreenWidth;
}
int32_t CQVGlobalFunctions::SmallScreenHeight() const {
  return kSmallScreenHeight;
}

bool CQVGlobalFunctions::IsSmallScreen() const {
  const auto display = platform::Display::Current();
  return display->ScreenWidth() < SmallScreenWidth() ||
         display->ScreenHeight() < SmallScreenHeight();
}

std::string CQVGlobalFunctions::GetQVIniFile() const {
  throw Error::Object1000(
      "CQVGlobalFunctions: Die Methode GetQVIniFile wird nicht mehr "
      "untersützt");
}

void CQVGlobalFunctions::AddDisplayHelpers(Builder& builder) {
  using T = CQVGlobalFunctions;
  builder
      .Get("QvRoomlistSelectedItemBackColor",
           &T::QvRoomlistSelectedItemBackColor)
      .Get("QvRoomlistSelectedItemForeColor",
           &T::QvRoomlistSelectedItemForeColor)
      .Get("QvRoomlistUnselectedItemBackColor",
           &T::QvRoomlistUnselectedItemBackColor)
      .Get("QvRoomlistUnselectedItemForeColor",
           &T::QvRoomlistUnselectedItemForeColor)
      .Get("ActiveControlBackColor", &T::ActiveControlBackColor)
      .Get("InActiveControlBackColor", &T::InActiveControlBackColor)
      .Get("ActiveTextColor", &T::ActiveTextColor)
      .Get("InActiveTextColor", &T::InActiveTextColor)
      .Get("SmallScreenWidth", &T::SmallScreenWidth)
      .Get("SmallScreenHeight", &T::SmallScreenHeight)
      .Method("IsSmallScreen", &T::IsSmallScreen)
      .Method("GetQVIniFile", &T::GetQVIniFile);
}

}  // namespace qv
