// A curve as the model serves it to the window: positions 0 to size() - 1,
// each a point (x, y), read in bulk. A source is made for one request and
// reads the model in place; it must not outlive the model's next refresh.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <utility>

namespace plot {

struct Point {
  double x = 0.0;
  double y = 0.0;
};

class CurveSource {
 public:
  virtual ~CurveSource() = default;

  virtual std::size_t size() const = 0;
  // The points at positions first, first + 1, ... into `points`; the caller
  // keeps first + points.size() within size().
  virtual void read(std::size_t first, std::span<Point> points) const = 0;
};

// A source whose points come from a function of the position, inlined into
// the loop over a range.
template <typename PointAt>
class PointsByPosition final : public CurveSource {
 public:
  PointsByPosition(std::size_t size, PointAt pointAt) : size_(size), pointAt_(std::move(pointAt)) {}

  std::size_t size() const override { return size_; }
  void read(std::size_t first, std::span<Point> points) const override {
    for (std::size_t i = 0; i < points.size(); ++i) points[i] = pointAt_(first + i);
  }

 private:
  std::size_t size_;
  PointAt pointAt_;
};

template <typename PointAt>
std::unique_ptr<CurveSource> pointsByPosition(std::size_t size, PointAt pointAt) {
  return std::make_unique<PointsByPosition<PointAt>>(size, std::move(pointAt));
}

}  // namespace plot
