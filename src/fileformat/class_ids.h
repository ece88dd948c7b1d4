// The fixed class identifiers of the model's collectable objects. Saved
// states and type tests of the original collections compare them, so they
// keep their numbers.
#pragma once

#include <cstdint>

namespace classid {

inline constexpr std::uint16_t kIteration = 4353;
inline constexpr std::uint16_t kQVDouble = 4354;
inline constexpr std::uint16_t kIteRes = 4355;
inline constexpr std::uint16_t kQVfile = 4356;
inline constexpr std::uint16_t kResFile = 4357;
inline constexpr std::uint16_t kProjectMonitor = 4359;
inline constexpr std::uint16_t kMonitor = 4360;
inline constexpr std::uint16_t kDiagFile = 4368;
inline constexpr std::uint16_t kDiagramMonitor = 4369;
inline constexpr std::uint16_t kProfFile = 4370;
inline constexpr std::uint16_t kProfileMonitor = 4371;
inline constexpr std::uint16_t kIteResMarine = 4374;

}  // namespace classid
