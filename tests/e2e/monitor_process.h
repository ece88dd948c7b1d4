// Runs the built monitor as a user would: copied into a temporary installation
// folder, registered in a registry file of its own, with a home folder of its
// own and a controlled environment.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace e2e {

// What the program prints first in every mode (the version is 7.1 in all three).
inline constexpr std::string_view kBanner = "\n\n\n      <***>   Monitor 7.1  -  Mar  7 2018\n\n\n";

// For a program that is expected to keep running: once its standard output
// holds `outputHas`, it is watched for `grace` more and then killed.
struct StopWhen {
  std::string outputHas;
  std::chrono::milliseconds grace{300};
};

struct RunOptions {
  // The arguments after the program name.
  std::vector<std::string> arguments;
  // The program name handed to the program; its own path when unset.
  std::optional<std::string> argv0;
  // Added to, or replacing, the default environment (TALVIK_REGISTRY, HOME,
  // PATH, and DISPLAY and XAUTHORITY when the tests have them).
  std::map<std::string, std::string> environment;
  // Names taken out of the environment after `environment` is applied.
  std::vector<std::string> removedVariables;
  // Written to standard input after `inputDelay`, which is then closed.
  std::string input;
  std::chrono::milliseconds inputDelay{0};
  std::optional<StopWhen> stop;
  // A run that lasts longer is killed and counts as a test failure.
  std::chrono::milliseconds timeout{20000};

  RunOptions& withArguments(std::vector<std::string> values) {
    arguments = std::move(values);
    return *this;
  }
  RunOptions& withProgramName(std::string name) {
    argv0 = std::move(name);
    return *this;
  }
  RunOptions& withVariable(const std::string& name, std::string value) {
    environment[name] = std::move(value);
    return *this;
  }
  RunOptions& withoutVariable(std::string name) {
    removedVariables.push_back(std::move(name));
    return *this;
  }
  RunOptions& withInput(std::string text, std::chrono::milliseconds delay = {}) {
    input = std::move(text);
    inputDelay = delay;
    return *this;
  }
  RunOptions& stopOnceOutputHas(std::string text, std::chrono::milliseconds grace) {
    stop = StopWhen{std::move(text), grace};
    return *this;
  }
};

struct RunResult {
  std::string output;  // standard output
  std::string errors;  // standard error
  bool exited = false;
  int exitStatus = -1;         // when `exited`
  bool stoppedByTest = false;  // killed on purpose, see RunOptions::stop
  bool timedOut = false;
  bool exitedBeforeInput = false;  // ended before the delayed input was written

  // Standard output cut at its line ends; text after the last one is a last line.
  std::vector<std::string> lines() const;
};

// A temporary installation:
//   <base>/apps/<folder>/<bin folder>/monitor   the program (a copy, not a link:
//                                                its version tag comes from its
//                                                real path)
//   <base>/apps/<folder>/_tcl/_monitorTurbo/itf_init.tcl
//   <base>/apps/<folder>/_tcl/_monitorTurbo/_monitorMarine/itf_init.tcl
//   <base>/registry        registry file, holding the installation's key
//   <base>/home            HOME of the program
//   <base>/work            its working folder
// Everything under <base> is removed when the object goes.
class Installation {
 public:
  // `binFolder` empty puts the program straight into the installation folder.
  explicit Installation(std::string folder = "dune71", std::string binFolder = "bin");
  ~Installation();
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  const std::filesystem::path& base() const { return base_; }
  const std::filesystem::path& root() const { return root_; }
  const std::filesystem::path& program() const { return program_; }
  std::filesystem::path home() const { return base_ / "home"; }
  std::filesystem::path work() const { return base_ / "work"; }
  std::filesystem::path registryFile() const { return base_ / "registry"; }
  std::filesystem::path turboScript() const;
  std::filesystem::path marineScript() const;

  void writeTurboScript(std::string_view text) const;
  void writeMarineScript(std::string_view text) const;
  // Replaces the whole registry file.
  void writeRegistry(std::string_view text) const;
  // "[Software\TALVIK\<key>]" and a TALVIK_DIR line naming this installation.
  std::string registrySection(std::string_view key) const;

  RunResult run(const RunOptions& options = {}) const;

 private:
  std::filesystem::path base_;
  std::filesystem::path root_;
  std::filesystem::path program_;
};

// Writes `text` to `path`, creating the folders on the way.
void writeFile(const std::filesystem::path& path, std::string_view text);

// The banner followed by `lines`, each ended by a line end.
std::string bannerThen(const std::vector<std::string>& lines);

}  // namespace e2e
