// What the scripts find in the interpreter: arguments, flags, the wrapped
// "file" command, and how script and toolkit errors are reported.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "monitor_process.h"

namespace e2e {
namespace {

using std::chrono::milliseconds;
namespace fs = std::filesystem;

// A socket file exists and passes a permission test, but cannot be opened.
void makeSocketFile(const fs::path& path) {
  const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_GE(fd, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.string().size(), sizeof address.sun_path);
  std::strcpy(address.sun_path, path.c_str());
  ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ::close(fd);
}

TEST(TclSession, ArgumentsAreAProperList) {
  Installation installation;
  installation.writeTurboScript(
      "after 100 itf_quit_command\n"
      "puts \"argc=$argc llength=[llength $argv]\"\n"
      "foreach a $argv { puts \"<$a>\" }\n"
      "puts \"argv0=$argv0\"\n");
  const RunResult result = installation.run(RunOptions().withArguments(
      {"two words", "{open", "close}", "", "$HOME[exit 3]\\", "-qvversion", "71"}));
  EXPECT_EQ(result.output, bannerThen({"argc=7 llength=7", "<two words>", "<{open>", "<close}>",
                                       "<>", "<$HOME[exit 3]\\>", "<-qvversion>", "<71>",
                                       "argv0=" + installation.program().string()}));
  EXPECT_EQ(result.exitStatus, 1);

  const RunResult none = installation.run(RunOptions().withProgramName("monitor"));
  EXPECT_EQ(none.output, bannerThen({"argc=0 llength=0", "argv0=monitor"}));
  EXPECT_EQ(none.exitStatus, 1);
}

TEST(TclSession, ApplicationFlagsAndRcFileName) {
  // The rc file is named for the scripts; the program does not read it.
  Installation installation;
  writeFile(installation.home() / ".talrc", "puts \"rc file sourced\"\n");
  const char* script =
      "foreach name [lsort [array names app]] { puts \"app($name)=$app($name)\" }\n"
      "puts \"tcl_rcFileName=$tcl_rcFileName\"\n"
      "puts \"end of script\"\n";
  installation.writeTurboScript("after 100 itf_quit_command\n" + std::string(script));
  const std::vector<std::string> expected = {"app(catiav5_is_used)=1",
                                             "app(debug)=0",
                                             "app(gridlark_multiblock)=0",
                                             "app(gridlark_only)=0",
                                             "app(is_a_library)=0",
                                             "app(is_vexo)=0",
                                             "app(multithread)=0",
                                             "app(parasolid_is_used)=0",
                                             "app(versionChecking)=1",
                                             "tcl_rcFileName=~/.talrc",
                                             "end of script"};
  const RunResult turbo = installation.run();
  EXPECT_EQ(turbo.output, bannerThen(expected));

  Installation marine("dune_marine71");
  marine.writeMarineScript("after 100 itf_quit_command_KELP\n" + std::string(script));
  const RunResult marineRun = marine.run();
  EXPECT_EQ(marineRun.output, bannerThen(expected));
}

TEST(TclSession, ReadableMeansTheFileOpens) {
  Installation installation;
  const fs::path data = installation.work() / "data file.txt";
  writeFile(data, "x\n");
  const fs::path socket = installation.work() / "s";
  makeSocketFile(socket);
  installation.writeTurboScript(
      "after 100 itf_quit_command\n"
      "proc show {label value} { puts \"$label: $value\" }\n"
      "set dir [pwd]\n"
      "show {readable file} [file readable [file join $dir {data file.txt}]]\n"
      "show {readable relative} [file readable {data file.txt}]\n"
      "show {readable missing} [file readable [file join $dir missing]]\n"
      "show {readable folder} [file readable $dir]\n"
      "show {readable socket} [file readable [file join $dir s]]\n"
      "show {built-in readable socket} [::original_file_18112015 readable [file join $dir s]]\n"
      "show {exists socket} [file exists [file join $dir s]]\n"
      "show {readable without name} [file readable]\n"
      "show {channels left open} [llength [chan names file*]]\n");
  const RunResult result = installation.run();
  // Tcl opens a folder for reading without complaint on this system.
  EXPECT_EQ(result.output,
            bannerThen({"readable file: 1", "readable relative: 1", "readable missing: 0",
                        "readable folder: 1", "readable socket: 0", "built-in readable socket: 1",
                        "exists socket: 1", "readable without name: 0", "channels left open: 0"}));
  EXPECT_EQ(result.exitStatus, 1);
}

TEST(TclSession, OtherFileSubcommandsBehaveAsTheBuiltIn) {
  Installation installation;
  writeFile(installation.work() / "a b" / "[c].res", "");
  installation.writeTurboScript(
      "after 100 itf_quit_command\n"
      "proc show {label value} { puts \"$label: $value\" }\n"
      "show renamed [info commands ::original_file_18112015]\n"
      "show {exists} [file exists {a b/[c].res}]\n"
      "show {exists missing} [file exists {a b/c.res}]\n"
      "show {isdirectory} [file isdirectory {a b}]\n"
      "show {join} [file join a b]\n"
      "show {join absolute} [file join a /b c]\n"
      "show {tail} [file tail {/x/a b/[c].res}]\n"
      "show {tail dollar} [file tail {/x/$y}]\n"
      "show {extension} [file extension {/x/a b/[c].res}]\n"
      "show {dirname} [file dirname {/x/a b/[c].res}]\n"
      "show {split} [file split {/x/a b/c}]\n"
      "show {unknown subcommand fails} [catch {file no_such_subcommand x}]\n"
      // A subcommand that sets a variable sets it in the caller's frame.
      "proc scratch {} {\n"
      "    close [file tempfile name [file join [pwd] probe]]\n"
      "    set found [file exists $name]\n"
      "    file delete $name\n"
      "    return \"$found [file exists $name]\"\n"
      "}\n"
      "show {tempfile name in the caller} [scratch]\n");
  const RunResult result = installation.run();
  EXPECT_EQ(
      result.output,
      bannerThen({"renamed: ::original_file_18112015", "exists: 1", "exists missing: 0",
                  "isdirectory: 1", "join: a/b", "join absolute: /b/c", "tail: [c].res",
                  "tail dollar: $y", "extension: .res", "dirname: /x/a b", "split: / x {a b} c",
                  "unknown subcommand fails: 1", "tempfile name in the caller: 1 0"}));
  EXPECT_EQ(result.exitStatus, 1);
}

TEST(TclSession, FailingStartupScriptIsReportedAndTheLoopGoesOn) {
  Installation installation;
  installation.writeTurboScript(
      "puts \"before the error\"\n"
      "after 300 {puts \"errorInfo later: $errorInfo\"; itf_quit_command}\n"
      "error boom\n"
      "puts \"after the error\"\n");
  const RunResult result = installation.run();
  const std::string where = "    (file \"" + installation.turboScript().string() + "\" line 3)";
  // The report shows errorInfo as Tcl left it; the line added afterwards is
  // seen only by later readers.
  EXPECT_EQ(result.output,
            bannerThen({"before the error", " TCL ERROR 3 boom", "boom", "    while executing",
                        "\"error boom\"", where, "errorInfo later: boom", "    while executing",
                        "\"error boom\"", where, " {\"while\" body line 3}"}));
  EXPECT_TRUE(result.exited);
  EXPECT_EQ(result.exitStatus, 1);
}

TEST(TclSession, MissingStartupScriptIsReportedAndTheLoopGoesOn) {
  // Without its script nothing can call the quit command, and the main window
  // keeps the loop waiting: the test ends the program once the report is out.
  Installation installation;
  const RunResult result = installation.run(
      RunOptions().stopOnceOutputHas("no such file or directory\n", milliseconds(300)));
  EXPECT_TRUE(result.stoppedByTest);
  const std::vector<std::string> lines = result.lines();
  ASSERT_GE(lines.size(), 7u);
  EXPECT_EQ(result.output.substr(0, kBanner.size()), kBanner);
  // The error line number and errorInfo are left over from earlier
  // evaluations, as reading a missing file sets neither.
  const std::string& report = lines[6];
  const std::string start = " TCL ERROR ";
  const std::string end = " couldn't read file \"" + installation.turboScript().string() +
                          "\": no such file or directory";
  ASSERT_TRUE(report.starts_with(start) && report.ends_with(end)) << report;
  const std::string line = report.substr(start.size(), report.size() - start.size() - end.size());
  EXPECT_TRUE(!line.empty() && line.find_first_not_of("0123456789") == std::string::npos) << report;
}

TEST(TclSession, NoDisplayIsReportedAndEndsWithStatusZero) {
  Installation installation;
  installation.writeTurboScript("puts \"script ran\"\nafter 100 itf_quit_command\n");
  const RunResult result = installation.run(RunOptions().withoutVariable("DISPLAY"));
  // Tk leaves errorInfo empty: the report's second line is empty.
  EXPECT_EQ(result.output,
            bannerThen({" TK ERROR no display name and no $DISPLAY environment variable", ""}));
  EXPECT_TRUE(result.exited);
  EXPECT_EQ(result.exitStatus, 0);
}

}  // namespace
}  // namespace e2e
