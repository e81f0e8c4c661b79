// Test helper: runs a command-line program through the shell and captures
// its exit status, standard output and standard error, for tests that use a
// built tool as a user would.
//
//   const qv::testing::ToolRun run = qv::testing::RunQv("modules VM");
//   EXPECT_EQ(run.status, 0);
//   EXPECT_EQ(qv::testing::Lines(run.out).at(0), "...");
#ifndef QVGLOBAL_TESTING_RUN_TOOL_H_
#define QVGLOBAL_TESTING_RUN_TOOL_H_

#include <ostream>
#include <string>
#include <vector>

namespace qv::testing {

struct ToolRun {
  int status = -1;  // exit status; -1 when the program did not exit normally
  std::string out;
  std::string err;

  bool operator==(const ToolRun&) const = default;
};
// Shows a run in test failures.
void PrintTo(const ToolRun& run, std::ostream* os);

// Runs `'<program>' <args>`; `args` is shell text (quote paths yourself).
// `env` is put in front of the command (e.g. "TMPDIR=/x").
ToolRun RunTool(const std::string& program, const std::string& args,
                const std::string& env = "");

// The checkout the tests were built from, and the qv tool they were built
// with ("" when the build has no tool; then QVGLOBAL_QV_TOOL is undefined and
// the tool's tests are left out).
const char* SourceDir();
const char* QvToolPath();

#ifdef QVGLOBAL_QV_TOOL
// Runs the qv tool that the tests were built with.
inline ToolRun RunQv(const std::string& args, const std::string& env = "") {
  return RunTool(QVGLOBAL_QV_TOOL, args, env);
}
#endif

// The lines of `text`, without their line ends.
std::vector<std::string> Lines(const std::string& text);

}  // namespace qv::testing

#endif  // QVGLOBAL_TESTING_RUN_TOOL_H_
