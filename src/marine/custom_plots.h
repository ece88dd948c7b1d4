// Curves defined by a formula over a computation's force, moment and motion
// histories, e.g. "(Fx_hull+Fx_rudder)/2". A plot keeps its formula and its
// points (abscissa, value), one per record of the first body's "Fx" history.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "formula/quantity_data_provider.h"

namespace marine {

using PlotPoints = std::vector<std::pair<double, double>>;

// Evaluates `formula` at every point of the provider from point `first` on,
// appending to `points`. False, with `points` emptied, when the formula does
// not parse (unknown name, syntax, nesting) or cannot be evaluated.
bool computePlotPoints(const formula::QuantityDataProvider& provider, const std::string& formula,
                       std::size_t first, PlotPoints& points);

class CustomPlot {
 public:
  const std::string& formula() const { return formula_; }
  const PlotPoints& points() const { return points_; }

  // Computes the points of the new formula; keeps the formula only when they
  // could be computed (after a failure the plot has no points).
  bool setFormula(const formula::QuantityDataProvider& provider, const std::string& formula);
  // Brings the points up to date: when `fromScratch` is false, only the new
  // points and those from the first one that read NaN on; all of them
  // otherwise.
  void update(const formula::QuantityDataProvider& provider, bool fromScratch);

 private:
  std::string formula_;
  PlotPoints points_;
};

class CustomPlots {
 public:
  explicit CustomPlots(const formula::QuantityDataProvider& provider) : provider_(provider) {}

  // The new plot's number, or -1 (and no plot) when its formula fails.
  int add(const std::string& formula);
  // True when plot `number` now holds the new formula.
  bool edit(std::size_t number, const std::string& formula);
  void remove(std::size_t number);
  std::size_t size() const { return plots_.size(); }
  const CustomPlot& plot(std::size_t number) const { return plots_[number]; }
  // After the computation was read again: new points only, or every point
  // when the run was loaded afresh.
  void update(bool fromScratch);

 private:
  const formula::QuantityDataProvider& provider_;
  std::vector<CustomPlot> plots_;
};

}  // namespace marine
