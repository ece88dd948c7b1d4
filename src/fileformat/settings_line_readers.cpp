#include "fileformat/settings_line_readers.h"

#include <string_view>
#include <vector>

#include "platform/console.h"

namespace {

bool isSeparator(char c) { return c == ' ' || c == '\t' || c == '\n'; }

// The words of the line with the offset at which each starts.
struct Word {
  std::string_view text;
  std::size_t end;
};

std::vector<Word> splitWords(std::string_view line) {
  std::vector<Word> words;
  std::size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && isSeparator(line[i])) ++i;
    const std::size_t start = i;
    while (i < line.size() && !isSeparator(line[i])) ++i;
    if (i > start) words.push_back({line.substr(start, i - start), i});
  }
  return words;
}

int reportWrongFormat(LineStatus& status, std::string_view consoleTag, std::string_view keyword,
                      std::string_view form, const std::string& line) {
  platform::consoleLine(std::string(consoleTag) + line);
  status.message = "line" + std::to_string(status.lineNumber) + ": wrong format";
  status.read = "read:     " + line;
  status.expected = "expected: " + std::string(keyword) + std::string(form);
  status.ok = 0;
  return 0;
}

}  // namespace

int readStrings(LineStatus& status, std::string& text, const std::string& line) {
  const std::vector<Word> words = splitWords(line);
  if (words.empty())
    return reportWrongFormat(status, "  wrong format for15: ", "", " <strings> ", line);
  std::string_view rest = std::string_view(line).substr(words.front().end);
  const auto isBlankOrTab = [](char c) { return c == ' ' || c == '\t'; };
  while (!rest.empty() && isBlankOrTab(rest.front())) rest.remove_prefix(1);
  while (!rest.empty() && isBlankOrTab(rest.back())) rest.remove_suffix(1);
  text = rest;
  return 1;
}

int readStringInteger(LineStatus& status, std::string& word, std::string& rest,
                      const std::string& line) {
  const std::vector<Word> words = splitWords(line);
  if (words.size() < 2) {
    return reportWrongFormat(status, "  wrong format for27: ", "", " <string> <integer>", line);
  }
  word = words[1].text;
  rest.clear();
  for (std::size_t i = 2; i < words.size(); ++i) {
    if (i > 2) rest += ' ';
    rest += words[i].text;
  }
  return 1;
}

int readStringString(LineStatus& status, std::string& second, std::string& third,
                     const std::string& line) {
  const std::vector<Word> words = splitWords(line);
  if (words.size() < 3) {
    const std::string_view keyword = words.empty() ? std::string_view{} : words.front().text;
    return reportWrongFormat(status, "  wrong format for29: ", keyword, " <string> <string>", line);
  }
  second = words[1].text;
  third = words[2].text;
  return 1;
}
