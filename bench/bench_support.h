// What the benchmarks of the file readers share: a fast writer of numeric
// text rows, files closed on scope exit, and the process's memory and
// processor time.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace bench_support {

// Numbers written into a 1 MiB buffer with std::to_chars, each followed by a
// blank, flushed to the file when full: the benchmarks write hundreds of
// megabytes of solver output in a few seconds.
class TextRows {
 public:
  explicit TextRows(std::FILE* file) : file_(file) {}
  ~TextRows() { flush(); }
  TextRows(const TextRows&) = delete;
  TextRows& operator=(const TextRows&) = delete;

  void text(std::string_view chars) {
    room(chars.size());
    std::copy(chars.begin(), chars.end(), buffer_.data() + used_);
    used_ += chars.size();
  }
  // Makes sure that `count` characters fit before the next flush.
  void room(std::size_t count) {
    if (buffer_.size() - used_ < count) flush();
  }
  void integer(std::int64_t value) { advance(std::to_chars(at(), limit(), value).ptr); }
  void fixed(double value, int precision) {
    advance(std::to_chars(at(), limit(), value, std::chars_format::fixed, precision).ptr);
  }
  void scientific(double value, int precision) {
    advance(std::to_chars(at(), limit(), value, std::chars_format::scientific, precision).ptr);
  }
  void general(double value, int precision) {
    advance(std::to_chars(at(), limit(), value, std::chars_format::general, precision).ptr);
  }
  // Ends the row: its last blank becomes a line feed.
  void end() { buffer_[used_ - 1] = '\n'; }
  // Uniform in [-amplitude, amplitude], from a fixed-seed generator.
  double noise(double amplitude) {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return amplitude * (static_cast<double>(state_ >> 11) * 0x1.0p-52 - 1.0);
  }
  void flush() {
    if (used_ != 0 && std::fwrite(buffer_.data(), 1, used_, file_) != used_) {
      throw std::runtime_error("cannot write a benchmark file");
    }
    used_ = 0;
  }

 private:
  char* at() { return buffer_.data() + used_; }
  char* limit() { return buffer_.data() + buffer_.size(); }
  void advance(char* to) {
    *to++ = ' ';
    used_ = static_cast<std::size_t>(to - buffer_.data());
  }

  static inline std::array<char, 1u << 20> buffer_{};
  std::FILE* file_;
  std::size_t used_ = 0;
  std::uint64_t state_ = 0x9E3779B97F4A7C15ull;
};

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

inline File openFile(const std::filesystem::path& path, const char* mode) {
  File file(std::fopen(path.c_str(), mode));
  if (!file) throw std::runtime_error("cannot open " + path.string());
  return file;
}

// Resident set size of the process, in bytes.
inline std::uint64_t residentBytes() {
  std::ifstream statm("/proc/self/statm");
  std::uint64_t size = 0;
  std::uint64_t resident = 0;
  statm >> size >> resident;
  return resident * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

// Processor time the process, or the calling thread, has used, in seconds.
inline double cpuSeconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}
inline double processCpuSeconds() { return cpuSeconds(CLOCK_PROCESS_CPUTIME_ID); }
inline double threadCpuSeconds() { return cpuSeconds(CLOCK_THREAD_CPUTIME_ID); }

}  // namespace bench_support
