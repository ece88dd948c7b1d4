#include "app/version_tag.h"

#include "app/build_configuration.h"
#include "platform/system_services.h"

namespace app {
namespace {

std::string lowerAscii(std::string_view text) {
  std::string lowered(text);
  for (char& c : lowered) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lowered;
}

// Removes the first occurrence of `separator word separator` and everything
// after it; true when something was removed.
bool removeFolderAndRest(std::string& path, std::string_view word) {
  const std::string pattern =
      platform::kPathSeparator + std::string(word) + platform::kPathSeparator;
  const std::size_t at = path.find(pattern);
  if (at == std::string::npos) return false;
  path.erase(at);
  return true;
}

// Removes everything up to and including the last `separator word`; true when
// something was removed.
bool removeLeadingUpTo(std::string& path, std::string_view word) {
  if (word.empty()) return false;
  const std::string pattern = platform::kPathSeparator + std::string(word);
  const std::size_t at = path.rfind(pattern);
  if (at == std::string::npos) return false;
  path.erase(0, at + pattern.size());
  return true;
}

ToolWords buildToolWords() {
  ToolWords words;
  std::string_view list = MONITOR_OTHER_TOOL_WORDS;
  for (std::string& word : words) {
    const std::size_t end = list.find(';');
    word = lowerAscii(list.substr(0, end));
    list = end == std::string_view::npos ? std::string_view{} : list.substr(end + 1);
  }
  return words;
}

}  // namespace

const ToolWords& configuredToolWords() {
  static const ToolWords words = buildToolWords();
  return words;
}

std::string qvversionArgument(const std::vector<std::string>& arguments) {
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    if (arguments[i] == "-qvversion") {
      return i + 1 < arguments.size() ? arguments[i + 1] : std::string{};
    }
  }
  return {};
}

VersionTag versionTagFromProgramPath(std::string_view programPath, const ToolWords& tools) {
  VersionTag version;
  version.tag = lowerAscii(programPath);
  if (!removeFolderAndRest(version.tag, "bin")) removeFolderAndRest(version.tag, "bin64");
  if (removeLeadingUpTo(version.tag, kProductWord)) return version;
  for (std::size_t i = 0; i < tools.size(); ++i) {
    if (removeLeadingUpTo(version.tag, lowerAscii(tools[i]))) {
      version.tool = static_cast<int>(i) + 1;
      break;
    }
  }
  return version;
}

std::vector<std::string> registryKeysFor(const VersionTag& version, const ToolWords& tools) {
  const std::string root = "Software\\TALVIK\\";
  const std::string familyKey = root + std::string(kProductWord) + version.tag;
  if (version.tool == 0) return {familyKey};
  const std::string toolKey =
      root + tools[static_cast<std::size_t>(version.tool) - 1] + version.tag;
  if (version.tool == 1) return {toolKey, familyKey};
  return {toolKey};
}

}  // namespace app
