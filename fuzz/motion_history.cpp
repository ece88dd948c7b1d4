// A body's motion file as a running solver leaves it, followed through every
// step of growFile; the columns and rows are walked after each.
#include "marine/motion_history.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = fuzzing::scratchFolder() + "Mvt_hull.dat";
  marine::MotionHistory motion;
  fuzzing::growFile(path, fuzzing::asText(data, size), [&] {
    if (!motion.isOpen()) motion.open(path);
    motion.update();
    for (std::size_t row = 0; row < motion.rowCount(); ++row) {
      fuzzing::use(motion.times()[row]);
      for (std::size_t c = 0; c < motion.columnNames().size(); ++c)
        fuzzing::use(motion.values(c)[row]);
    }
  });
  return 0;
}
