// The version tag names the installed version that this program belongs to;
// it comes from "-qvversion" or from the installation folder's name, and
// selects the installation's registry key.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace app {

// Installation-folder words of the maker's five other tools, in table order.
// Tool 1 falls back on the product family's registry key; tool 2 needs no
// registry at all.
using ToolWords = std::array<std::string, 5>;

// The table this program was built with.
const ToolWords& configuredToolWords();

// The product family's own folder and registry word.
inline constexpr std::string_view kProductWord = "dune";

struct VersionTag {
  std::string tag;
  // 0 when the product family's word or no word matched, else 1 to 5 for the
  // tool whose word matched.
  int tool = 0;
};

// The text after the first "-qvversion" among the arguments that follow the
// program name; empty when there is none or it is the very last argument.
std::string qvversionArgument(const std::vector<std::string>& arguments);

// Derives the tag from the program's own path: lower-cases it, drops the
// first "/bin/..." (else "/bin64/...") and then everything up to and
// including the last "/dune" (else the last "/" + tool word).
VersionTag versionTagFromProgramPath(std::string_view programPath, const ToolWords& tools);

// "Software\TALVIK\" + word + tag; for tool 1 its own key and then the
// product family's.
std::vector<std::string> registryKeysFor(const VersionTag& version, const ToolWords& tools);

}  // namespace app
