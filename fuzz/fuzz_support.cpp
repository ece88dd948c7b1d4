#include "fuzz_support.h"

#include <stdlib.h>  // mkdtemp

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "platform/console.h"

namespace fuzzing {
namespace {

std::string scratchPath;
volatile double sink;

void removeScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(scratchPath, ignored);
}

[[noreturn]] void fail(const std::string& what) {
  std::fprintf(stderr, "fuzz harness: %s\n", what.c_str());
  std::abort();
}

void put(const std::string& path, std::string_view text, std::ios::openmode mode) {
  std::ofstream out(path, std::ios::binary | mode);
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  if (!out) fail("cannot write " + path);
}

}  // namespace

const std::string& scratchFolder() {
  if (scratchPath.empty()) {
    const char* base = std::getenv("TMPDIR");
    std::string pattern =
        std::string(base != nullptr && *base != '\0' ? base : "/tmp") + "/monitor_fuzz_XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) fail("cannot make a folder from " + pattern);
    scratchPath = pattern + "/";
    std::atexit(removeScratchFolder);
  }
  return scratchPath;
}

void writeFile(const std::string& path, std::string_view text) { put(path, text, std::ios::trunc); }

void appendFile(const std::string& path, std::string_view text) { put(path, text, std::ios::app); }

void removeFile(const std::string& path) {
  std::error_code error;
  std::filesystem::remove(path, error);
  if (error) fail("cannot remove " + path);
}

void use(double value) { sink = value; }

Cut cutAtFirstByte(std::string_view input) {
  if (input.empty()) return {};
  const std::string_view rest = input.substr(1);
  const std::size_t at = rest.size() * static_cast<unsigned char>(input.front()) / 256;
  return {rest.substr(0, at), rest.substr(at)};
}

std::vector<std::string_view> splitParts(std::string_view input, std::size_t mostParts) {
  std::vector<std::string_view> parts;
  while (parts.size() + 1 < mostParts) {
    const std::size_t at = input.find(kPartSeparator);
    if (at == std::string_view::npos) break;
    parts.push_back(input.substr(0, at));
    input.remove_prefix(at + kPartSeparator.size());
  }
  parts.push_back(input);
  return parts;
}

}  // namespace fuzzing

// libFuzzer calls this once, before the first input. The readers report on
// the console and the formula parser on std::cerr, line after line for every
// input: thousands of lines a second that would bury libFuzzer's own log.
// Both go nowhere from here on; libFuzzer and the sanitizers write their
// reports to the standard error through other means, so those still appear.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  static std::ostream nowhere(nullptr);
  static platform::ConsoleRedirect quietConsole(nowhere);
  std::cerr.rdbuf(nullptr);
  return 0;
}
