// Blade-section curves that the solver writes as small text files, reread
// from their top whenever the script asks:
//   diagram file: "Extrado_1", "Extrado_2", "Intrado_1", "Intrado_2";
//   profile file: "Extrado", "Intrado".
// Each curve holds x and y of its points side by side (x of point k at 2k).
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fileformat/class_ids.h"
#include "fileformat/qv_file.h"

namespace turbo {

// A blade-section file: for the extrado and then the intrado, a count of
// points and then per point the x of each of that side's curves followed by
// their y. A diagram has two curves per side, a profile one.
class BladeSectionFile : public QVfile {
 public:
  // What tells the two kinds apart: the word of the "Cannot open" message
  // and the names of each side's curves.
  struct Layout {
    const char* kind;
    std::vector<std::string_view> extrado;
    std::vector<std::string_view> intrado;
  };

  // 1 when the file could be opened (whatever its numbers gave), else 0.
  int read();
  int nbPts(std::string_view curve) const;
  // The number at position n of the curve (x of point k at 2k, y at 2k+1);
  // 0 for an unknown curve or a position the curve does not hold.
  float value(std::string_view curve, long long n) const;

 protected:
  BladeSectionFile(std::string path, const Layout& layout);

 private:
  struct Side {
    const std::vector<std::string_view>* names;
    std::int32_t count = 0;
    std::vector<std::vector<float>> curves;
  };
  // The side holding the named curve and the curve's place in it.
  std::pair<const Side*, std::size_t> find(std::string_view name) const;

  const Layout& layout_;
  std::array<Side, 2> sides_;
};

class DiagFile : public BladeSectionFile {
 public:
  static constexpr std::uint16_t kClassId = classid::kDiagFile;
  explicit DiagFile(std::string path);
};

class ProfFile : public BladeSectionFile {
 public:
  static constexpr std::uint16_t kClassId = classid::kProfFile;
  explicit ProfFile(std::string path);
};

// A loaded blade file; only an active one rereads its file on update.
template <typename File>
class BladeFileMonitor {
 public:
  explicit BladeFileMonitor(std::string path) : file_(std::move(path)) {}

  const std::string& name() const { return file_.path(); }
  File& file() { return file_; }
  bool active = false;

  void update();

 private:
  File file_;
};

class DiagramMonitor : public BladeFileMonitor<DiagFile> {
 public:
  static constexpr std::uint16_t kClassId = classid::kDiagramMonitor;
  static constexpr std::string_view kAlreadyLoaded = "Diagram already loaded";
  using BladeFileMonitor::BladeFileMonitor;
};

class ProfileMonitor : public BladeFileMonitor<ProfFile> {
 public:
  static constexpr std::uint16_t kClassId = classid::kProfileMonitor;
  static constexpr std::string_view kAlreadyLoaded = "Profile already loaded";
  using BladeFileMonitor::BladeFileMonitor;
};

// The loaded files of one kind: a start-up collection (which nothing fills)
// and the files added by the scripts, numbered in that order.
template <typename FileMonitor>
class BladeFileRegistry {
 public:
  // Adds a monitor for the path (unless the start-up collection has one),
  // activates the last monitor and updates them all.
  void add(const std::string& path, int& registryBusy);
  void updateAll();
  // The first monitor loaded under exactly this path.
  FileMonitor* find(const std::string& path);

 private:
  std::vector<std::unique_ptr<FileMonitor>> startUp_;
  std::vector<std::unique_ptr<FileMonitor>> added_;
};

extern template class BladeFileRegistry<DiagramMonitor>;
extern template class BladeFileRegistry<ProfileMonitor>;

}  // namespace turbo
