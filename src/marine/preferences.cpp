#include "marine/preferences.h"

#include <fstream>

#include "fileformat/line_helpers.h"
#include "script/settings_line_readers.h"

namespace marine {
namespace {

std::string lowerAscii(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

std::string firstWord(const std::string& line) {
  const std::size_t start = line.find_first_not_of(" \t\n");
  if (start == std::string::npos) return {};
  const std::size_t end = line.find_first_of(" \t\n", start);
  return line.substr(start, end == std::string::npos ? std::string::npos : end - start);
}

// The rest of the line after its first word, as the settings reader gives it.
std::string restOf(const std::string& line) {
  LineStatus status;
  std::string rest;
  readStrings(status, rest, line);
  return rest;
}

}  // namespace

void Preferences::read(const std::string& path) {
  groups_.clear();
  std::ifstream in(path, std::ios::binary);
  std::map<std::string, std::string>* group = nullptr;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty()) continue;
    const std::string word = lowerAscii(firstWord(line));
    if (group == nullptr) {
      if (word == "product") group = &groups_[restOf(line)];
    } else if (word == "end_product") {
      group = nullptr;
    } else if (!word.empty()) {
      (*group)[lowerAscii(firstWord(line))] = restOf(line);
    }
  }
}

std::string Preferences::getPreference(const std::string& group, const std::string& key,
                                       const std::string& fallback) {
  const auto& settings = groups_[group];
  const auto found = settings.find(lowerAscii(key));
  return found == settings.end() ? fallback : found->second;
}

}  // namespace marine
