#include "qv/command_registry.h"

#include <algorithm>
#include <map>
#include <utility>

namespace qv::tool {
namespace {

// Function-local statics: ready for the static initialisers that register.
std::map<std::string, QvCommand>& Commands() {
  static std::map<std::string, QvCommand> commands;
  return commands;
}

std::vector<DemoStep>& DemoSteps() {
  static std::vector<DemoStep> steps;
  return steps;
}

}  // namespace

bool RegisterCommand(QvCommand command) {
  std::string name = command.name;
  Commands().insert_or_assign(std::move(name), std::move(command));
  return true;
}

std::vector<QvCommand> RegisteredCommands() {
  std::vector<QvCommand> all;
  for (const auto& [name, command] : Commands()) all.push_back(command);
  return all;
}

bool RegisterDemoStep(int order, std::string title,
                      std::function<void(DemoContext&)> run) {
  DemoSteps().push_back({order, std::move(title), std::move(run)});
  return true;
}

std::vector<DemoStep> RegisteredDemoSteps() {
  std::vector<DemoStep> steps = DemoSteps();
  std::stable_sort(
      steps.begin(), steps.end(), [](const DemoStep& a, const DemoStep& b) {
        return a.order != b.order ? a.order < b.order : a.title < b.title;
      });
  return steps;
}

}  // namespace qv::tool
