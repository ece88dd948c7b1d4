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
  const std::string stem = residualPath.ends_with(kResidualEnding)
                               ? residualPath.substr(0, residualPath.size() - kResidualEnding.size())
                               : residualPath;
  return stem + "_body_param.dat";
}

}  // namespace

ProjectMonitorMarine::ProjectMonitorMarine(std::string residualPath)
    : path_(std::move(residualPath)), resFile_(path_), currentIterations_(kCurrentIterationSlots, 0) {
  folder_ = resFile_.directory();
}

bool ProjectMonitorMarine::load() {
  loaded_ = false;
  if (!fileformat::openInputFile(path_)) {
    platform::consoleLine("Residual file " + path_ + " is not found");
    return false;
  }
  if (!detectBodies()) {
    reportBadFile("Forces/Moments");
    return false;
  }
  if (!readStructure()) {
    reportBadFile("Residuals");
    return false;
  }
  std::fill(currentIterations_.begin(), currentIterations_.end(), 0);
  actuatorDisks_.reset(folder_);
  stampText_ = readResCreationDate(path_);
  stampTime_ = stampTime(stampText_);
  loaded_ = true;
  extraQuantities_.reset(folder_);
  updateDerived(true);
  return true;
}

void ProjectMonitorMarine::updateDerived(bool fromScratch) {
  extraQuantities_.update();
  variables_.rebuild();
  customPlots_.update(fromScratch);
}

void ProjectMonitorMarine::readBodyBlocks(const std::string& path, std::vector<BodyObject>& bodies,
                                          bool needsMode, const char* label) {
  // The force file's blocks stand in its header; the body description is
  // nothing but blocks.
  bool opened = false;
  HeaderLines lines = HeaderLines::ofFile(path, needsMode, opened);
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

  const std::string stamp = readResCreationDate(path_);
  platform::consoleLine(stamp.empty()
                            ? "No #CREATED tag found in the .res file.\nRe-running the solver may give a wrong picture."
                            : "File '" + path_ + "' created on " + stamp);

  platform::consoleLine("Reading eff_Fx.dat for steadiness...");
  const std::string forcePath = folder_ + std::string(kForceFileNames[0]);
  if (!fileformat::openInputFile(forcePath)) {
    platform::consoleLine("Cannot read " + forcePath + ". Please check if the file exists ");
    return false;
  }
  readBodyBlocks(forcePath, fallbackBodies_, true, "Fallback body: ");

  const std::string descriptionPath = bodyDescriptionPath(path_);
  platform::consoleLine("Reading ...body_param.dat file for body structure ...");
  if (!fileformat::openInputFile(descriptionPath)) {
    platform::consoleLine("Cannot read file " + descriptionPath + ". Please check if the file exists ");
  } else {
    readBodyBlocks(descriptionPath, trueBodies_, false, "True body: ");
  }
  usingFallback_ = trueBodies_.empty();
  if (usingFallback_) {
    platform::consoleLine("Warning! Couldn't find bodies in " + descriptionPath + ".\nGoing to fallback mode...");
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
    componentFiles_.emplace_back(folder_ + std::string(kForceFileNames[static_cast<std::size_t>(file)]),
                                 Component::force, file);
  }
  for (int file = 0; file < kComponentFiles; ++file) {
    componentFiles_.emplace_back(folder_ + std::string(kMomentFileNames[static_cast<std::size_t>(file)]),
                                 Component::moment, file);
  }
  for (ComponentFile& file : componentFiles_) file.readHeader(bodies());

  if (motionBodyIndexes_.empty()) platform::consoleLine("Body Motion List is empty");
  for (const std::size_t b : motionBodyIndexes_) {
    BodyObject& body = bodies()[b];
    body.motion().open(folder_ + "Mvt_" + body.name() + ".dat");
  }
  return true;
}

bool ProjectMonitorMarine::checkRunConsistency() {
  const std::string stamp = readResCreationDate(path_);
  if (stamp.empty()) return false;
  const std::optional<std::time_t> time = stampTime(stamp);
  if (time == stampTime_) return false;
  platform::consoleLine("Different solver run detected, currently displayed run started at " +
                        formatStampTime(stampTime_) + ", the run from " + formatStampTime(time) +
                        " is on the disk now.\nRe-initializing the data...");
  stampTime_ = time;
  reinitialise();
  return true;
}

void ProjectMonitorMarine::reinitialise() {
  resFile_.restart();
  trueBodies_.clear();
  fallbackBodies_.clear();
  motionBodyIndexes_.clear();
  componentFiles_.clear();
  loaded_ = false;
  if (!detectBodies()) {
    reportBadFile("Forces/Moments");
  } else if (!readStructure()) {
    reportBadFile("Residuals");
  } else {
    loaded_ = true;
  }
  std::fill(currentIterations_.begin(), currentIterations_.end(), 0);
  actuatorDisks_.reset(folder_);
  extraQuantities_.reset(folder_);
  stampText_ = readResCreationDate(path_);
  stampTime_ = stampTime(stampText_);
}

std::size_t ProjectMonitorMarine::contentSize() const {
  std::size_t size = resFile_.recordCount();
  for (const BodyObject& body : bodies()) size += body.times().size() + body.convergedTimes().size();
  for (const BodyObject* body : motionBodies()) size += body->motion().rowCount();
  for (const ComponentFile& file : componentFiles_) size += file.rowsRead();
  for (const ExtraQuantity& quantity : extraQuantities_.quantities()) size += quantity.values.size();
  for (int d = 0; d < actuatorDisks_.diskCount(); ++d) size += static_cast<std::size_t>(actuatorDisks_.disk(d).stepCount());
  return size;
}

std::vector<const BodyObject*> ProjectMonitorMarine::motionBodies() const {
  std::vector<const BodyObject*> moving;
  for (const std::size_t b : motionBodyIndexes_) moving.push_back(&bodies()[b]);
  return moving;
}

ProjectMonitorMarine::Refresh ProjectMonitorMarine::refresh() {
  Refresh result;
  if (!loaded_) {
    result.changed = load();
    if (!loaded_) return result;
  }
  const std::size_t before = contentSize();
  bool reloaded = checkRunConsistency();
  if (reloaded) result.changed = true;
  if (!loaded_) return result;

  result.succeeded = true;
  if (resFile_.update() == 2) {
    reinitialise();
    reloaded = true;
    result.changed = true;
    if (!loaded_) return {false, true};
    resFile_.update();
  }
  if (!bodies().empty()) {
    for (std::size_t f = 0; f < componentFiles_.size(); ++f) {
      ComponentFile& file = componentFiles_[f];
      if (file.update(bodies(), f == 0) == ComponentFile::Status::rewritten) {
        // The solver started over without a new stamp: read the new run.
        reinitialise();
        updateDerived(true);
        return {loaded_, true};
      }
    }
  }
  for (const std::size_t b : motionBodyIndexes_) {
    if (!bodies()[b].motion().update()) {
      result.succeeded = false;
      break;
    }
  }
  actuatorDisks_.update();
  updateDerived(reloaded);
  if (contentSize() != before) result.changed = true;
  return result;
}

}  // namespace marine
