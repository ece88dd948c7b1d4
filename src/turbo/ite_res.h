// One record of a turbomachinery residual history, seen in place inside the
// history's contiguous arrays: the iteration number (with, in unsteady runs,
// the time step and the physical time) and the record's values.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "fileformat/class_ids.h"

namespace turbo {

// Class identifiers of the record kinds and of their value items.
inline constexpr std::uint16_t kIterationClassId = classid::kIteration;
inline constexpr std::uint16_t kQVDoubleClassId = classid::kQVDouble;

class IteRes {
 public:
  static constexpr std::uint16_t kClassId = classid::kIteRes;

  IteRes(std::span<const float> values, std::int32_t iterationNumber, std::int32_t timeStep,
         double physicalTime, bool unsteady, std::uint32_t nbBlocks, std::uint32_t nbVars)
      : values_(values),
        iterationNumber_(iterationNumber),
        timeStep_(timeStep),
        physicalTime_(physicalTime),
        unsteady_(unsteady),
        nbBlocks_(nbBlocks),
        nbVars_(nbVars) {}

  std::int32_t iterationNumber() const { return iterationNumber_; }
  // -1 for a steady record.
  std::int32_t timeStep() const { return timeStep_; }
  double physicalTime() const { return physicalTime_; }
  bool unsteady() const { return unsteady_; }
  std::uint32_t nbBlocks() const { return nbBlocks_; }
  std::uint32_t nbVars() const { return nbVars_; }
  std::span<const float> values() const { return values_; }

  // The value at `index`; 0 outside the record.
  float valueAt(std::int64_t index) const {
    return index >= 0 && static_cast<std::uint64_t>(index) < values_.size()
               ? values_[static_cast<std::size_t>(index)]
               : 0.0f;
  }

  // The value of a named curve of block 0.
  float valueOf(std::string_view name, int turbulenceCount) const;

 private:
  std::span<const float> values_;
  std::int32_t iterationNumber_;
  std::int32_t timeStep_;
  double physicalTime_;
  bool unsteady_;
  std::uint32_t nbBlocks_;
  std::uint32_t nbVars_;
};

}  // namespace turbo
