#include "marine/project_monitor_marine.h"

#include <filesystem>

#include "marine/creation_stamp.h"
#include "marine/header_lines.h"
#include "marine/script_hooks.h"
#include "platform/console.h"

namespace marine {
namespace {

constexpr std::string_view kResidualEnding = ".res";

std::string bodyDescriptionPath(const std::string& residualPath) {
  const std::string stem =
      residualPath.ends_with(kResidualEnding)
          ? residualPath.substr(0, residualPath.size() - kResidualEnding.size())
          : residualPath;
  return stem + "_body_param.dat";
}

}  // namespace

ProjectMonitorMarine::ProjectMonitorMarine(std::string residualPath)
    : path_(std::move(residualPath)),
      resFile_(path_),
      currentIterations_(kCurrentIterationSlots, 0) {
  folder_ = resFile_.directory();
}

void ProjectMonitorMarine::startOver() {
  loaded_ = false;
  resFile_.restart();
}

bool ProjectMonitorMarine::load() {
  // A computation loaded already is read again from the top; a load that
  // failed goes on with what its residual reader took (a damaged file is not
  // read again at every refresh).
  if (loaded_) startOver();
  trueBodies_.clear();
  fallbackBodies_.clear();
  motionBodyIndexes_.clear();
  componentFiles_.clear();
  files_.clear();
  std::fill(currentIterations_.begin(), currentIterations_.end(), 0);
  actuatorDisks_.reset(folder_);
  extraQuantities_.reset(folder_);
  if (!fileformat::InputFile::open(path_)) {
    platform::consoleLine("Residual file " + path_ + " is not found");
    return false;
  }
  stampText_ = readResCreationDate(path_);
  stampTime_ = stampTime(stampText_);
  if (!detectBodies()) {
    reportBadFile("Forces/Moments");
    return false;
  }
  if (!readStructure()) {
    reportBadFile("Residuals");
    return false;
  }
  listFiles();
  loaded_ = true;
  updateDerived(true);
  return true;
}

void ProjectMonitorMarine::listFiles() {
  files_.clear();
  files_.push_back({&resFile_.file(), true, [this] { return resFile_.update(); }});
  for (std::size_t f = 0; f < componentFiles_.size(); ++f) {
    files_.push_back({&componentFiles_[f].file(), true, [this, f] {
                        // Only eff_Fx.dat gives the bodies their row times.
                        return bodies().empty() ? fileformat::Update::unchanged
                                                : componentFiles_[f].update(bodies(), f == 0);
                      }});
  }
  for (const std::size_t b : motionBodyIndexes_) {
    MotionHistory& motion = bodies()[b].motion();
    files_.push_back({&motion.file(), false, [&motion] { return motion.update(); }});
  }
  files_.push_back({&actuatorDisks_.file(), false, [this] { return actuatorDisks_.update(); }});
  files_.push_back({&extraQuantities_.file(), false, [this] { return extraQuantities_.update(); }});
}

void ProjectMonitorMarine::updateDerived(bool fromScratch) {
  variables_.rebuild();
  customPlots_.update(fromScratch);
}

void ProjectMonitorMarine::readBodyBlocks(const std::string& path, std::vector<BodyObject>& bodies,
                                          bool needsMode, const char* label) {
  // The force file's blocks stand in its header; the body description is
  // nothing but blocks.
  HeaderLines lines = HeaderLines::ofFile(path, needsMode);
  while (!lines.atEnd()) {
    const std::string_view keyword = lines.keyword();
    lines.advance();
    if (keyword != "#QV_BEGIN") continue;
    const std::string_view blockKind = lines.keyword();
    if (blockKind == "CALCUL") {
      lines.advance();
      for (; !lines.atEnd() && lines.keyword() != "#QV_END"; lines.advance()) {
        if (needsMode && lines.keyword() == "MODE") {
          const std::string mode(lines.rest());
          platform::consoleLine("Mode: " + mode);
          modeKnown_ = mode == "STEADY" || mode == "UNSTEADY";
          unsteady_ = mode == "UNSTEADY";
        }
      }
      continue;
    }
    if (blockKind != "BODY") continue;
    lines.advance();
    if (needsMode && !modeKnown_) {
      platform::consoleLine(
          "Error! Cannot read body information from eff_Fx.dat: steadiness is undefined so far.");
      continue;
    }
    BodyObject body;
    body.readBlock(lines);
    platform::consoleLine(std::string(label) + body.name());
    bodies.push_back(std::move(body));
  }
}

bool ProjectMonitorMarine::detectBodies() {
  trueBodies_.clear();
  fallbackBodies_.clear();
  motionBodyIndexes_.clear();
  modeKnown_ = false;
  unsteady_ = false;

  platform::consoleLine(stampText_.empty() ? "No #CREATED tag found in the .res file.\nRe-running "
                                             "the solver may give a wrong picture."
                                           : "File '" + path_ + "' created on " + stampText_);

  platform::consoleLine("Reading eff_Fx.dat for steadiness...");
  const std::string forcePath = folder_ + std::string(kForceFileNames[0]);
  if (!fileformat::InputFile::open(forcePath)) {
    platform::consoleLine("Cannot read " + forcePath + ". Please check if the file exists ");
    return false;
  }
  readBodyBlocks(forcePath, fallbackBodies_, true, "Fallback body: ");

  const std::string descriptionPath = bodyDescriptionPath(path_);
  platform::consoleLine("Reading ...body_param.dat file for body structure ...");
  if (!fileformat::InputFile::open(descriptionPath)) {
    platform::consoleLine("Cannot read file " + descriptionPath +
                          ". Please check if the file exists ");
  } else {
    readBodyBlocks(descriptionPath, trueBodies_, false, "True body: ");
  }
  usingFallback_ = trueBodies_.empty();
  if (usingFallback_) {
    platform::consoleLine("Warning! Couldn't find bodies in " + descriptionPath +
                          ".\nGoing to fallback mode...");
  }
  for (BodyObject& body : bodies()) body.setRunMode(unsteady_);

  for (std::size_t b = 0; b < bodies().size(); ++b) {
    const std::string& name = bodies()[b].name();
    std::error_code error;
    if (!std::filesystem::is_regular_file(folder_ + "Mvt_" + name + ".dat", error)) continue;
    platform::consoleLine("Found Mvt body: " + name);
    motionBodyIndexes_.push_back(b);
  }
  return true;
}

bool ProjectMonitorMarine::readStructure() {
  if (!resFile_.readHeader()) return false;
  componentFiles_.clear();
  for (int file = 0; file < kComponentFiles; ++file) {
    componentFiles_.emplace_back(
        folder_ + std::string(kForceFileNames[static_cast<std::size_t>(file)]), Component::force,
        file);
  }
  for (int file = 0; file < kComponentFiles; ++file) {
    componentFiles_.emplace_back(
        folder_ + std::string(kMomentFileNames[static_cast<std::size_t>(file)]), Component::moment,
        file);
  }
  for (ComponentFile& file : componentFiles_) file.readHeader(bodies());

  if (motionBodyIndexes_.empty()) platform::consoleLine("Body Motion List is empty");
  for (const std::size_t b : motionBodyIndexes_) {
    BodyObject& body = bodies()[b];
    body.motion().open(folder_ + "Mvt_" + body.name() + ".dat");
  }
  return true;
}

bool ProjectMonitorMarine::newRunOnDisk() {
  // A residual file that has disappeared is reported by its reader, once.
  const std::optional<std::string> stamp = creationStampOf(path_);
  if (!stamp || stamp->empty()) return false;
  const std::optional<std::time_t> time = stampTime(*stamp);
  if (time == stampTime_) return false;
  platform::consoleLine("Different solver run detected, currently displayed run started at " +
                        formatStampTime(stampTime_) + ", the run from " + formatStampTime(time) +
                        " is on the disk now.\nRe-initializing the data...");
  return true;
}

std::vector<const BodyObject*> ProjectMonitorMarine::motionBodies() const {
  std::vector<const BodyObject*> moving;
  for (const std::size_t b : motionBodyIndexes_) moving.push_back(&bodies()[b]);
  return moving;
}

bool ProjectMonitorMarine::readFiles(Refresh& result) {
  for (const ListedFile& listed : files_) {
    const fileformat::Update status = listed.read();
    if (status == fileformat::Update::rewritten && listed.rewriteMeansNewRun) {
      // The solver started over without a new stamp: read the new run.
      return false;
    }
    if (status == fileformat::Update::appended || status == fileformat::Update::rewritten) {
      result.changed = true;
    }
    if (listed.file->lost()) result.lostFiles.push_back(listed.file->path());
  }
  return true;
}

ProjectMonitorMarine::Refresh ProjectMonitorMarine::refresh() {
  Refresh result;
  bool fromScratch = false;
  if (loaded_ && newRunOnDisk()) {
    startOver();
    result.changed = true;
    result.newRun = true;
  }
  if (!loaded_) {
    if (!load()) return result;
    fromScratch = true;
  }
  if (!readFiles(result)) {
    startOver();
    result = Refresh{false, true, true, {}};
    fromScratch = true;
    if (!load()) return result;
    readFiles(result);
  }
  result.changed = result.changed || fromScratch;
  if (result.changed) updateDerived(fromScratch);
  result.succeeded = result.lostFiles.empty();
  return result;
}

}  // namespace marine
