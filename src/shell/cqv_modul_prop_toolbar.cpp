// The toolbar operations of CQvModulProp on the form's ActiveBar.
#include <algorithm>
#include <string>

#include "com/error.h"
#include "com/text.h"
#include "platform/display.h"
#include "shell/cqv_modul_prop.h"
#include "shell/internal/host_collection.h"

namespace qv {
namespace {

// The band's docking areas: top, bottom, left, right, and floating.
constexpr int32_t kDockedAreas[] = {1, 2, 4, 8};
constexpr int32_t kFloating = 16;
// The picture slot of a tool that ABCopyPicture copies.
constexpr int32_t kPictureSlot = 0;

bool IsDocked(int32_t area) {
  return std::find(std::begin(kDockedAreas), std::end(kDockedAreas), area) !=
         std::end(kDockedAreas);
}

int32_t Long(const ObjectPtr& object, std::string_view member) {
  return object->Get(member).ToLong();
}

// The greatest width among the band's tools (0 without tools).
int32_t WidestTool(const ObjectPtr& band) {
  int32_t widest = 0;
  for (const ObjectPtr& tool : host::ItemsOf(band, "Tools")) {
    widest = std::max(widest, Long(tool, "Width"));
  }
  return widest;
}

// Makes a hidden band visible and floating, as wide as its widest tool; a
// visible band that floats is set floating again.
void MakeFloating(const ObjectPtr& band, bool visible) {
  if (visible) {
    band->Let("DockingArea", kFloating);
    return;
  }
  const int32_t widest = WidestTool(band);
  band->Let("Visible", true);
  if (Long(band, "Width") != widest) band->Let("Width", widest);
  if (Long(band, "DockingArea") != kFloating) {
    band->Let("DockingArea", kFloating);
  }
}

// The start of a band of `size` centred on `centre`, kept inside
// [0, screen).
int32_t KeepOnScreen(int32_t centre, int32_t size, int32_t screen) {
  int32_t start = centre - size / 2;
  if (start + size > screen) start = screen - size;
  return std::max(start, 0);
}

void CopyPictureAndCaption(const ObjectPtr& source, const ObjectPtr& tool) {
  const Variant picture =
      host::Require(source)->Call("GetPicture", {kPictureSlot});
  tool->Call("SetPicture", {kPictureSlot, picture});
  tool->Let("Caption", source->Get("Caption"));
}

bool IsNamed(const ObjectPtr& tool, const std::string& name) {
  return text::EqualsText(tool->Get("Name").ToString(), name);
}

}  // namespace

template <class Op>
auto CQvModulProp::WithSource(const char* member, Op&& op) {
  try {
    return op();
  } catch (const Error& e) {
    throw e.WithDescriptionPrefix("CQvModulProp->" + std::string(member) +
                                  ": ");
  }
}

ObjectPtr CQvModulProp::RequireActiveBar() {
  return host::Require(GetActiveBar());
}

void CQvModulProp::SetABToolEnabled(const std::string& sToolID, bool bEnabled) {
  WithSource("SetABToolEnabled", [&] {
    host::ItemOf(RequireActiveBar(), "Tools", sToolID)
        ->Let("Enabled", bEnabled);
  });
}

bool CQvModulProp::GetABToolEnabled(const std::string& sToolID) {
  return WithSource("GetABToolEnabled", [&] {
    return host::ItemOf(RequireActiveBar(), "Tools", sToolID)
        ->Get("Enabled")
        .ToBoolean();
  });
}

void CQvModulProp::ActivebarTrackPopup(const std::string& sBandname) {
  WithSource("ActivebarTrackPopup", [&] {
    host::ItemOf(RequireActiveBar(), "Bands", sBandname)->Call("TrackPopup");
  });
}

void CQvModulProp::ActivebarShowToolBar(const std::string& sBandname) {
  WithSource("ActivebarShowToolBar", [&] {
    const ObjectPtr bar = RequireActiveBar();
    const ObjectPtr band = host::ItemOf(bar, "Bands", sBandname);
    const bool visible = band->Get("Visible").ToBoolean();
    if (visible && IsDocked(Long(band, "DockingArea"))) return;
    MakeFloating(band, visible);
    bar->Call("RecalcLayout");

    const auto display = platform::Display::Current();
    const platform::ScreenPoint mouse = display->GetCursorPos();
    const int32_t width = Long(band, "Width");
    const int32_t height = Long(band, "Height");
    const int32_t left = KeepOnScreen(mouse.x, width, display->ScreenWidth());
    const int32_t top = KeepOnScreen(mouse.y, height, display->ScreenHeight());
    band->Let("left", left);
    band->Let("top", top);
    bar->Call("RecalcLayout");

    const platform::ScreenPoint middle{left + width / 2, top + height / 2};
    if (!(mouse == middle)) display->SetCursorPos(middle);
  });
}

void CQvModulProp::ABCopyPicture(const std::string& sSrcToolname,
                                 const std::string& sDestToolname) {
  const ObjectPtr bar = RequireActiveBar();
  const std::vector<ObjectPtr> own_tools = host::ItemsOf(bar, "Tools");
  ObjectPtr source;
  for (const ObjectPtr& tool : own_tools) {
    if (IsNamed(tool, sSrcToolname)) {
      source = tool;
      break;
    }
  }
  for (const ObjectPtr& band : host::ItemsOf(bar, "Bands")) {
    for (const ObjectPtr& tool : host::ItemsOf(band, "Tools")) {
      if (IsNamed(tool, sDestToolname)) CopyPictureAndCaption(source, tool);
    }
  }
  for (const ObjectPtr& tool : own_tools) {
    if (IsNamed(tool, sDestToolname)) CopyPictureAndCaption(source, tool);
  }
  bar->Call("Refresh");
}

}  // namespace qv
