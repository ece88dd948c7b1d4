// The points of a series that count: those whose abscissa and value are
// both finite and below the program's mark for a missing point.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace convergence {

// Values at least this large are the program's mark for a missing point.
inline constexpr double kMissingMark = 3.4028234e38;
inline bool isPresent(double value) { return std::fabs(value) < kMissingMark; }

// The finite points. The values are a view of the array given when none is
// missing (the usual case, and no copy of a long history), else a copy of
// those kept. The abscissae are looked up at a few positions only (the
// steady part's start, the batches' middles, the crossings), so they are
// never copied: the k-th point kept is the k-th given plus the number of
// points dropped before it.
class FinitePoints {
 public:
  FinitePoints(std::span<const double> abscissae, std::span<const double> values) {
    const std::size_t n = std::min(abscissae.size(), values.size());
    abscissae_ = abscissae.first(n);
    values_ = values.first(n);
    std::size_t first = 0;
    while (first < n && isPresent(abscissae_[first]) && isPresent(values_[first])) ++first;
    if (first == n) return;
    kept_ = std::make_unique_for_overwrite<double[]>(n + 1);
    std::copy(values_.begin(), values_.begin() + static_cast<std::ptrdiff_t>(first), kept_.get());
    std::size_t count = first;
    for (std::size_t i = first; i < n; ++i) {
      const bool keep = isPresent(abscissae_[i]) && isPresent(values_[i]);
      kept_[count] = values_[i];  // overwritten by the next one when not kept
      if (!keep) droppedLess_.push_back(i - droppedLess_.size());
      count += keep ? 1 : 0;
    }
    values_ = std::span<const double>(kept_.get(), count);
  }
  FinitePoints(const FinitePoints&) = delete;
  FinitePoints& operator=(const FinitePoints&) = delete;

  std::span<const double> values() const { return values_; }

  // The abscissa of the k-th point kept.
  double abscissa(std::size_t k) const {
    const auto droppedBefore = static_cast<std::size_t>(
        std::upper_bound(droppedLess_.begin(), droppedLess_.end(), k) - droppedLess_.begin());
    return abscissae_[k + droppedBefore];
  }

  // At a fractional position, between the two points kept around it.
  double abscissaAt(double position) const {
    const auto below = static_cast<std::size_t>(position);
    if (below + 1 >= values_.size()) return abscissa(values_.size() - 1);
    const double low = abscissa(below);
    return low + (position - static_cast<double>(below)) * (abscissa(below + 1) - low);
  }

  // Where each batch stands: the abscissa halfway through it.
  std::vector<double> batchPositions(std::span<const std::size_t> limits,
                                     std::size_t offset = 0) const {
    std::vector<double> positions(limits.size() - 1);
    for (std::size_t j = 0; j + 1 < limits.size(); ++j)
      positions[j] = 0.5 * (abscissa(offset + limits[j]) + abscissa(offset + limits[j + 1] - 1));
    return positions;
  }

 private:
  std::span<const double> abscissae_;
  std::span<const double> values_;
  std::unique_ptr<double[]> kept_;
  // For each point dropped, its position less the number dropped before it:
  // a non-decreasing list, of which those at or below k were dropped before
  // the k-th point kept.
  std::vector<std::size_t> droppedLess_;
};

}  // namespace convergence
