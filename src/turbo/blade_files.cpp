#include "turbo/blade_files.h"

#include <filesystem>
#include <fstream>
#include <locale>

#include "platform/console.h"

namespace turbo {
namespace {

// Reads the numbers of a blade file in the "C" locale, whatever the user's.
class NumberReader {
 public:
  explicit NumberReader(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) return;  // opens, but reads nothing
    in_.open(path);
    in_.imbue(std::locale::classic());
  }
  bool isOpen() const { return in_.is_open(); }
  bool read(std::int32_t& value) { return static_cast<bool>(in_ >> value); }
  bool read(float& value) { return static_cast<bool>(in_ >> value); }

 private:
  std::ifstream in_;
};

void reportCannotOpen(const char* kind, const std::string& path) {
  platform::consoleLine(std::string("*** ") + kind + " file  :: read() Cannot open the file :");
  platform::consoleLine("\t\t\t      " + path);
}

// Makes room for `count` points; a curve never shrinks.
void ensurePoints(std::vector<float>& curve, std::int32_t count) {
  const std::size_t needed = count > 0 ? 2 * static_cast<std::size_t>(count) : 0;
  if (curve.size() < needed) curve.resize(needed, 0.0f);
}

// Reads `count` points of two curves stored as x1 x2 y1 y2 per point.
bool readCurvePair(NumberReader& in, std::int32_t count, std::vector<float>& first,
                   std::vector<float>& second) {
  ensurePoints(first, count);
  ensurePoints(second, count);
  for (std::int32_t k = 0; k < count; ++k) {
    const std::size_t x = 2 * static_cast<std::size_t>(k);
    if (!in.read(first[x]) || !in.read(second[x]) || !in.read(first[x + 1]) ||
        !in.read(second[x + 1])) {
      return false;
    }
  }
  return true;
}

bool readCurve(NumberReader& in, std::int32_t count, std::vector<float>& points) {
  ensurePoints(points, count);
  for (std::int32_t k = 0; k < count; ++k) {
    const std::size_t x = 2 * static_cast<std::size_t>(k);
    if (!in.read(points[x]) || !in.read(points[x + 1])) return false;
  }
  return true;
}

// A count read from the file, bounded by what the file could hold: a count
// larger than the file's length is a damaged file, not a request for memory.
bool readCount(NumberReader& in, std::int32_t& count, const std::string& path) {
  std::int32_t read = 0;
  if (!in.read(read)) return false;
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (read < 0 || (!error && static_cast<std::uintmax_t>(read) > size)) {
    count = 0;
    return false;
  }
  count = read;
  return true;
}

float valueIn(const std::vector<float>* curve, long long n) {
  if (curve == nullptr || n < 0 || static_cast<std::size_t>(n) >= curve->size()) return 0.0f;
  return (*curve)[static_cast<std::size_t>(n)];
}

}  // namespace

int DiagFile::read() {
  NumberReader in(path());
  if (!in.isOpen()) {
    reportCannotOpen("Diagram", path());
    return 0;
  }
  if (readCount(in, nbExtrado_, path()) && readCurvePair(in, nbExtrado_, extrado1_, extrado2_) &&
      readCount(in, nbIntrado_, path())) {
    readCurvePair(in, nbIntrado_, intrado1_, intrado2_);
  }
  return 1;
}

const std::vector<float>* DiagFile::curve(std::string_view name) const {
  if (name == "Extrado_1") return &extrado1_;
  if (name == "Extrado_2") return &extrado2_;
  if (name == "Intrado_1") return &intrado1_;
  if (name == "Intrado_2") return &intrado2_;
  return nullptr;
}

int DiagFile::nbPts(std::string_view curve) const {
  if (curve == "Extrado_1" || curve == "Extrado_2") return nbExtrado_;
  if (curve == "Intrado_1" || curve == "Intrado_2") return nbIntrado_;
  return 0;
}

float DiagFile::value(std::string_view name, long long n) const { return valueIn(curve(name), n); }

int ProfFile::read() {
  NumberReader in(path());
  if (!in.isOpen()) {
    reportCannotOpen("Profile", path());
    return 0;
  }
  if (readCount(in, nbExtrado_, path()) && readCurve(in, nbExtrado_, extrado_) &&
      readCount(in, nbIntrado_, path())) {
    readCurve(in, nbIntrado_, intrado_);
  }
  return 1;
}

const std::vector<float>* ProfFile::curve(std::string_view name) const {
  if (name == "Extrado") return &extrado_;
  if (name == "Intrado") return &intrado_;
  return nullptr;
}

int ProfFile::nbPts(std::string_view curve) const {
  if (curve == "Extrado") return nbExtrado_;
  if (curve == "Intrado") return nbIntrado_;
  return 0;
}

float ProfFile::value(std::string_view name, long long n) const { return valueIn(curve(name), n); }

template <>
void BladeFileMonitor<DiagFile>::update() {
  if (active && file_.read() == 0) platform::consoleLine("can not read diagram file!");
}

template <>
void BladeFileMonitor<ProfFile>::update() {
  if (active) file_.read();
}

template <typename FileMonitor>
void BladeFileRegistry<FileMonitor>::add(const std::string& path, int& registryBusy) {
  for (const auto& monitor : startUp_) {
    if (monitor->name() == path) {
      platform::consoleLine(FileMonitor::kAlreadyLoaded);
      return;
    }
  }
  registryBusy = 1;
  added_.push_back(std::make_unique<FileMonitor>(path));
  registryBusy = 0;
  added_.back()->active = true;
  updateAll();
}

template <typename FileMonitor>
void BladeFileRegistry<FileMonitor>::updateAll() {
  for (const auto& monitor : startUp_) monitor->update();
  for (const auto& monitor : added_) monitor->update();
}

template <typename FileMonitor>
FileMonitor* BladeFileRegistry<FileMonitor>::find(const std::string& path) {
  for (const auto& monitor : startUp_) {
    if (monitor->name() == path) return monitor.get();
  }
  for (const auto& monitor : added_) {
    if (monitor->name() == path) return monitor.get();
  }
  return nullptr;
}

template class BladeFileRegistry<DiagramMonitor>;
template class BladeFileRegistry<ProfileMonitor>;

}  // namespace turbo
