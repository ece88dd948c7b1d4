#include "marine/preferences.h"

#include <algorithm>

#include "fileformat/input_file.h"
#include "fileformat/line_helpers.h"
#include "fileformat/settings_line_readers.h"

namespace marine {
namespace {

// A preferences file holds a few hundred lines; whatever lies past this is
// not read, so that a damaged file cannot exhaust the memory.
constexpr std::size_t kMaxPreferencesBytes = std::size_t{1} << 20;

// The file's text up to the limit, cut after its last whole line when the
// file goes on past the limit.
std::string preferencesText(const std::string& path) {
  fileformat::InputFile file = fileformat::InputFile::open(path);
  if (!file) return {};
  const std::uint64_t size = file.size().value_or(0);
  std::string text(
      static_cast<std::size_t>(std::min<std::uint64_t>(size, kMaxPreferencesBytes + 1)), '\0');
  text.resize(file.read(text.data(), text.size()));
  if (text.size() > kMaxPreferencesBytes) {
    const std::size_t lastFeed = text.rfind('\n', kMaxPreferencesBytes - 1);
    text.resize(lastFeed == std::string::npos ? 0 : lastFeed + 1);
  }
  return text;
}

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
  const std::string text = preferencesText(path);
  std::map<std::string, std::string>* group = nullptr;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t feed = text.find('\n', start);
    const std::size_t end = feed == std::string::npos ? text.size() : feed;
    std::string line = text.substr(start, end - start);
    start = end + 1;
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
