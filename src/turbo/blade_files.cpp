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

// Reads `count` points of a side's curves, stored per point as the x of
// every curve and then their y.
bool readSide(NumberReader& in, std::int32_t count, std::vector<std::vector<float>>& curves) {
  for (std::vector<float>& curve : curves) ensurePoints(curve, count);
  for (std::int32_t k = 0; k < count; ++k) {
    const std::size_t x = 2 * static_cast<std::size_t>(k);
    for (std::size_t coordinate : {x, x + 1}) {
      for (std::vector<float>& curve : curves) {
        if (!in.read(curve[coordinate])) return false;
      }
    }
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

const BladeSectionFile::Layout kDiagramLayout{
    "Diagram", {"Extrado_1", "Extrado_2"}, {"Intrado_1", "Intrado_2"}};
const BladeSectionFile::Layout kProfileLayout{"Profile", {"Extrado"}, {"Intrado"}};

}  // namespace

BladeSectionFile::BladeSectionFile(std::string path, const Layout& layout)
    : QVfile(std::move(path)), layout_(layout) {
  sides_[0].names = &layout.extrado;
  sides_[1].names = &layout.intrado;
  for (Side& side : sides_) side.curves.resize(side.names->size());
}

DiagFile::DiagFile(std::string path) : BladeSectionFile(std::move(path), kDiagramLayout) {}

ProfFile::ProfFile(std::string path) : BladeSectionFile(std::move(path), kProfileLayout) {}

int BladeSectionFile::read() {
  NumberReader in(path());
  if (!in.isOpen()) {
    reportCannotOpen(layout_.kind, path());
    return 0;
  }
  for (Side& side : sides_) {
    if (!readCount(in, side.count, path()) || !readSide(in, side.count, side.curves)) break;
  }
  return 1;
}

std::pair<const BladeSectionFile::Side*, std::size_t> BladeSectionFile::find(
    std::string_view name) const {
  for (const Side& side : sides_) {
    for (std::size_t c = 0; c < side.names->size(); ++c) {
      if ((*side.names)[c] == name) return {&side, c};
    }
  }
  return {nullptr, 0};
}

int BladeSectionFile::nbPts(std::string_view curve) const {
  const Side* side = find(curve).first;
  return side == nullptr ? 0 : side->count;
}

float BladeSectionFile::value(std::string_view name, long long n) const {
  const auto [side, c] = find(name);
  if (side == nullptr || n < 0) return 0.0f;
  const std::vector<float>& curve = side->curves[c];
  return static_cast<std::size_t>(n) < curve.size() ? curve[static_cast<std::size_t>(n)] : 0.0f;
}

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
