// The registries of the qv tool. Every subcommand and every step of the
// demonstration lives in its own source file and registers itself from a
// static initialiser, so adding one never touches a shared file:
//
//   namespace {
//   void AddHello(CLI::App& app) {
//     CLI::App* sub = app.add_subcommand("hello", "Say hello");
//     sub->callback([] { std::cout << "hello\n"; });
//   }
//   const bool kHelloRegistered = qv::tool::RegisterCommand({"hello",
//   AddHello});
//
//   void ShowHello(qv::tool::DemoContext& ctx) { ctx.out << "hello\n"; }
//   const bool kHelloDemo = qv::tool::RegisterDemoStep(50, "Hello", ShowHello);
//   }  // namespace
//
// A command reports failure by throwing qv::Error; the tool prints the
// error's description on standard error and exits with status 1. The
// registries own what is registered; they are filled before main runs and
// only read afterwards.
#ifndef QVGLOBAL_TOOLS_QV_COMMAND_REGISTRY_H_
#define QVGLOBAL_TOOLS_QV_COMMAND_REGISTRY_H_

#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace CLI {
class App;
}  // namespace CLI

namespace qv::tool {

// A subcommand: `add` adds it (with its options and callback) to the app.
struct QvCommand {
  std::string name;
  std::function<void(CLI::App& app)> add;
};

// What a demonstration step works with: the demo folder (a fresh temporary
// folder, or the one given with --dir) and the stream to report on.
struct DemoContext {
  std::filesystem::path folder;
  std::ostream& out;
};

struct DemoStep {
  int order;
  std::string title;
  std::function<void(DemoContext&)> run;
};

// Registers a subcommand; a second command of the same name replaces the
// first. Returns true so that it can initialise a static.
bool RegisterCommand(QvCommand command);
// The registered commands, sorted by name.
std::vector<QvCommand> RegisteredCommands();

// Registers a step of `qv demo`. Steps run by ascending `order`; steps of
// equal order run by title. Returns true so that it can initialise a static.
bool RegisterDemoStep(int order, std::string title,
                      std::function<void(DemoContext&)> run);
// The registered steps in the order they run.
std::vector<DemoStep> RegisteredDemoSteps();

}  // namespace qv::tool

#endif  // QVGLOBAL_TOOLS_QV_COMMAND_REGISTRY_H_
