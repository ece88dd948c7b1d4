// What the scripts find in the interpreter: their arguments, the locations of
// the installation, and the wrapped "file" command.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <sstream>

#include "monitor_process.h"

namespace e2e {
namespace {

TEST(TclSession, ArgumentsLocationsAndTheFileCommand) {
  Installation installation;
  const std::string root = installation.root().string();
  const std::string home = installation.home().string();
  // env() as the scripts find it: "@" for the root, "^" for its parent, "~" for HOME.
  std::istringstream variables(
      "QV_VERSION=71 TALVIK_DIR=@ DRIVER=opengl GMX_REVERSEVIDEO=on HOME=~ TMP_DIR=~/.talvik/tmp/ "
      "TCL_PATH=@/_tcl TCL_LIBRARY=@/_tcl/_system/tcl8.4 TK_LIBRARY=@/_tcl/_system/tk8.4 "
      "TIX_LIBRARY=@/_tcl/_system/tix8.4 BLT_LIBRARY=@/_tcl/_system/blt2.4 PLOTVU_PATH=@ "
      "QV_VERSIONS_DIR=^ VORTAXE_DIR=@/bin GMX_EXE=@/bin/gmx GRA_EXE=@/bin/monitor "
      "VTX_EXE=@/bin/vortaxe PLV_EXE=@/bin/plotvu TURNKEY_INP_PATH= PYTHONPATH=@/python64 "
      "ONLINEHELPDUNE_DIR=@/html/online_help/dune/ ONLINEHELPGMX_DIR=@/html/online_help/gmx/ "
      "ONLINEHELPVEXO_DIR=@/html/online_help/vexo/ "
      "ONLINEHELPPLOTVU_DIR=@/html/online_help/plotvu/");
  // A socket file exists and passes a permission test, but cannot be opened.
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{AF_UNIX, {}};
  std::strcpy(address.sun_path, (installation.work() / "s").c_str());
  ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ::close(socket);
  writeFile(installation.work() / "data file.txt", "x\n");

  std::string script =
      "after 100 itf_quit_command\n"
      "proc show {label value} { puts \"$label: $value\" }\n"
      "show argv \"$argc [llength $argv] <[join $argv ><]> $argv0\"\n";
  std::vector<std::string> expected = {"argv: 5 5 <two words><{open><close}><><$HOME[exit 3]\\> " +
                                       root + "/bin/monitor"};
  for (std::string variable; variables >> variable;) {
    const std::string name = variable.substr(0, variable.find('='));
    script += "puts \"" + name + "=$env(" + name + ")\"\n";
    for (const auto& [mark, path] :
         {std::pair{'@', root}, {'~', home}, {'^', installation.base().string() + "/apps"}}) {
      if (const auto at = variable.find(mark); at != std::string::npos)
        variable.replace(at, 1, path);
    }
    expected.push_back(variable);
  }
  script += R"tcl(show exported [exec /bin/sh -c {echo "$QV_VERSION|$TALVIK_DIR|$GRA_EXE|$DRIVER"}]
show readable "[file readable {data file.txt}] [file readable missing] [file readable .] [file readable s] [::original_file_18112015 readable s] [file readable] [llength [chan names file*]]"
# A subcommand that sets a variable sets it in the caller's frame.
proc scratch {} {
  close [file tempfile name [file join [pwd] probe]]
  set found [file exists $name]
  file delete $name
  return "$found [file exists $name] [file tail {/x/a b/[c].res}]"
}
show others "[scratch] [catch {file no_such_subcommand x}]"
)tcl";
  expected.insert(expected.end(), {"exported: 71|" + root + "|" + root + "/bin/monitor|opengl",
                                   "readable: 1 0 1 0 1 0 0", "others: 1 0 [c].res 1"});
  writeFile(installation.turboScript(), script);
  const RunResult result =
      installation.run({{"two words", "{open", "close}", "", "$HOME[exit 3]\\"}});
  EXPECT_EQ(result.output, bannerThen(expected));
  EXPECT_EQ(result.exitStatus, 1);
}

}  // namespace
}  // namespace e2e
