// The bodies of a marine computation and their parts. A body's block:
//
//   #QV_BEGIN
//   BODY
//   NAME hull
//   GRAVITY_CENTER 61.2 0.0 -1.5
//   #QV_BEGIN
//   SUBBODY
//   NAME keel
//   #QV_END
//   #QV_END
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "marine/component_histories.h"
#include "marine/header_lines.h"
#include "marine/motion_history.h"

namespace marine {

class SubBodyObject : public ComponentHistories {
 public:
  SubBodyObject() : ComponentHistories("SubBodyObject") {}

  // Reads the sub-body's block, the reader standing after its "SUBBODY"
  // line, up to its "#QV_END"; false when the block never ends.
  bool readBlock(HeaderLines& lines);

  const std::string& name() const { return name_; }

 private:
  std::string name_ = "undefined";
};

class BodyObject : public ComponentHistories {
 public:
  BodyObject() : ComponentHistories("BodyObject") {}

  // Reads the body's block, the reader standing after its "BODY" line, up to
  // its "#QV_END". A sub-body block that never ends is dropped and stops the
  // reading.
  bool readBlock(HeaderLines& lines);

  const std::string& name() const { return name_; }
  bool hasGravityCentre() const { return hasGravityCentre_; }
  const std::array<double, 3>& gravityCentre() const { return gravityCentre_; }

  std::size_t subBodyCount() const { return subBodies_.size(); }
  SubBodyObject& subBody(std::size_t index) { return subBodies_[index]; }
  const SubBodyObject& subBody(std::size_t index) const { return subBodies_[index]; }

  // Gives the body and its sub-bodies their converged series (unsteady runs).
  void setRunMode(bool unsteady);

  // A row key: "T" (time) or "itnl" (iteration); false with a message for
  // any other name.
  bool addRowKey(std::string_view name, double value);
  const std::vector<double>& times() const { return times_; }
  void reserveRows(std::size_t count) {
    times_.reserve(count);
    iterations_.reserve(count);
  }
  const std::vector<std::int32_t>& iterations() const { return iterations_; }
  // Physical times of the converged rows.
  const std::vector<double>& convergedTimes() const { return convergedTimes_; }
  void addConvergedTime(double time) { convergedTimes_.push_back(time); }

  MotionHistory& motion() { return motion_; }
  const MotionHistory& motion() const { return motion_; }
  // Whether the body moves: it has a motion file.
  bool usesMotions() const { return motion_.isOpen(); }
  // The scripts' current position on each motion of the body.
  CurrentIterations& currentMotionIterations() { return currentMotions_; }

 private:
  std::string name_ = "undefined";
  std::array<double, 3> gravityCentre_{};
  bool hasGravityCentre_ = false;
  std::vector<SubBodyObject> subBodies_;
  std::vector<double> times_;
  std::vector<std::int32_t> iterations_;
  std::vector<double> convergedTimes_;
  MotionHistory motion_;
  CurrentIterations currentMotions_;
};

}  // namespace marine
