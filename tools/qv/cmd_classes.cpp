// `qv classes [PROGID]`: without an argument the ProgIDs of all creatable
// classes, one per line; with one, that class's dispatch interface: each
// member in interface order with its id, name, the ways it can be invoked
// its parameter types (optional ones in brackets) and the type of the
// value a let or set takes, then its events with their parameter types
// where the class declares them ("Array&" for a by-reference one).
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "com/class_factory.h"
#include "com/class_info.h"
#include "com/error.h"
#include "qv/command_registry.h"

namespace qv::tool {
namespace {

// The parameter types of an accessor, the optional ones in brackets.
std::string TypeList(const Accessor& accessor) {
  std::vector<std::string> types;
  for (size_t i = 0; i < accessor.param_types.size(); ++i) {
    const std::string& type = accessor.param_types[i];
    types.push_back(static_cast<int>(i) < accessor.required ? type
                                                            : "[" + type + "]");
  }
  return fmt::format("{}", fmt::join(types, ", "));
}

// "(String, [Long])" for a method or an indexed get; "= Long" for the
// value a let or set takes.
std::string Signature(const MemberInfo& m) {
  std::vector<std::string> parts;
  const Accessor& call = m.method ? m.method : m.get;
  if (call && (m.method || !call.param_types.empty())) {
    parts.push_back("(" + TypeList(call) + ")");
  }
  const Accessor& put = m.let ? m.let : m.set;
  if (put && !put.param_types.empty()) {
    parts.push_back("= " + put.param_types.back());
  }
  return fmt::format("{}", fmt::join(parts, " "));
}

std::string Plural(size_t n, const char* word) {
  return fmt::format("{} {}{}", n, word, n == 1 ? "" : "s");
}

void PrintProgIds() {
  for (const ClassRegistration& reg : RegisteredClasses()) {
    std::cout << reg.progid << '\n';
  }
}

void PrintClass(const std::string& progid) {
  const ClassRegistration* reg = FindClass(progid);
  if (reg == nullptr) throw Error::Runtime(err::kCantCreateObject);
  const ClassInfo& info = *reg->info;
  size_t width = 0;
  for (const MemberInfo& m : info.members()) {
    width = std::max(width, m.name.size());
  }
  std::cout << reg->progid << " (" << info.name() << ")\n";
  for (const MemberInfo& m : info.members()) {
    const std::string line =
        fmt::format("{:>4}  {:<{}}  {:<12} {}", m.id, m.name, width,
                    m.KindsText(), Signature(m));
    std::cout << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
  }
  if (info.events().empty()) return;
  std::cout << "events:\n";
  for (const EventInfo& e : info.events()) {
    std::vector<std::string> params;
    for (size_t i = 0; i < e.params.size(); ++i) {
      params.push_back(i < e.param_types.size()
                           ? e.param_types[i] + " " + e.params[i]
                           : e.params[i]);
    }
    std::cout << fmt::format("      {}({})\n", e.name, fmt::join(params, ", "));
  }
}

void AddClassesCommand(CLI::App& app) {
  CLI::App* classes = app.add_subcommand(
      "classes", "List the creatable classes, or the interface of one");
  auto progid = std::make_shared<std::string>();
  classes->add_option("PROGID", *progid,
                      "ProgID, e.g. qvglobal10.CQVActiveBar");
  classes->callback([progid] {
    if (progid->empty()) {
      PrintProgIds();
    } else {
      PrintClass(*progid);
    }
  });
}

void ShowClassSummary(DemoContext& ctx) {
  const std::vector<ClassRegistration> classes = RegisteredClasses();
  size_t members = 0;
  size_t events = 0;
  for (const ClassRegistration& reg : classes) {
    members += reg.info->members().size();
    events += reg.info->events().size();
  }
  ctx.out << fmt::format(
      "  {} creatable classes with {} and {} in all\n"
      "  (`qv classes` lists them, `qv classes PROGID` shows one)\n",
      classes.size(), Plural(members, "member"), Plural(events, "event"));
}

[[maybe_unused]] const bool kClassesRegistered =
    RegisterCommand({"classes", AddClassesCommand});
[[maybe_unused]] const bool kClassesDemoRegistered =
    RegisterDemoStep(900, "Classes of the library", ShowClassSummary);

}  // namespace
}  // namespace qv::tool
