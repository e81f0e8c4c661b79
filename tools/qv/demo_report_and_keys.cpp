// Demonstration steps for the module helpers: the register of used keys and
// the event that lets a module adjust report rows before they are printed.
#include <fmt/format.h>

#include <memory>
#include <string>
#include <string_view>

#include "com/safe_array.h"
#include "modules/car_bef_det_sec_param.h"
#include "modules/cqv_ar_events.h"
#include "modules/cqv_used_keys.h"
#include "qv/command_registry.h"

namespace qv::tool {
namespace {

void ShowUsedKeys(DemoContext& ctx) {
  CQvUsedKeys_t_ used;
  used.add(4, "Raum", "R1");
  used.add(4, "Raum", "R2");
  ctx.out << "  registered (4, \"Raum\", \"R1\") and (4, \"Raum\", \"R2\")\n";
  struct Query {
    int32_t modul;
    const char* key;
    const char* data;
  };
  for (const Query& q : {Query{4, "RAUM", "r1"}, Query{4, "Raum", "R3"},
                         Query{5, "Raum", "R1"}}) {
    ctx.out << fmt::format("  isIn({}, \"{}\", \"{}\") = {}\n", q.modul, q.key,
                           q.data, used.isIn(q.modul, q.key, q.data));
  }
}

std::string RowText(const SafeArray& values) {
  std::string text;
  for (const Variant& v : values) {
    if (!text.empty()) text += ", ";
    text += v.IsString() ? "\"" + v.ToString() + "\"" : v.ToString();
  }
  return text;
}

void ShowReportEvent(DemoContext& ctx) {
  CQvAREvents events;
  // The module's listener: rooms above 20 m² print bold, with a remark.
  events.events()->Advise([](std::string_view, Args args) {
    SafeArray& values = args[1].ToArray();
    if (values[1].ToDouble() > 20) {
      args[0].ToObjectAs<CARBefDetSecParam_t_>()->SetBold(true);
      values[2] = "gross";
    }
  });
  auto param = std::make_shared<CARBefDetSecParam_t_>();
  const SafeArray rows[] = {{"R1", 12.5, ""}, {"R2", 31.0, ""}};
  int32_t row = 0;
  for (SafeArray values : rows) {
    ++row;
    param->init(row, row, false);
    events.REBefPrRowDetSec(param, values);
    ctx.out << fmt::format("  row {}: [{}]{}\n", row, RowText(values),
                           param->Bold() ? "  (bold)" : "");
  }
}

[[maybe_unused]] const bool kUsedKeysDemo =
    RegisterDemoStep(20, "Used keys register", ShowUsedKeys);
[[maybe_unused]] const bool kReportEventDemo =
    RegisterDemoStep(30, "Report row event", ShowReportEvent);

}  // namespace
}  // namespace qv::tool
