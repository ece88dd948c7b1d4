#include "marine/custom_plots.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "formula/functions.h"
#include "formula/parser.h"

namespace marine {
namespace {

constexpr const char* kAbscissaName = "t";

}  // namespace

bool computePlotPoints(const formula::QuantityDataProvider& provider, const std::string& text,
                       std::size_t first, PlotPoints& points) {
  formula::SymbolTable symbols = formula::functionSymbols();
  const int abscissaId = symbols.insert(kAbscissaName);
  std::vector<std::string> names;
  provider.GetVariableNames(names);
  for (const std::string& name : names) symbols.insert(name);

  try {
    formula::Parser parser(symbols, true);
    if (parser.parse(text) != formula::ParseStatus::ok || parser.root() == nullptr) {
      points.clear();
      return false;
    }
    // Only the variables the formula names need values; each is read from
    // its array directly rather than by name at every point.
    struct Source {
      int id;
      const std::vector<double>* series;
    };
    std::vector<Source> sources;
    bool needsAbscissa = false;
    for (const int id : parser.referencedVariables()) {
      if (id == abscissaId) {
        needsAbscissa = true;
      } else if (id >= static_cast<int>(formula::kFunctions.size())) {
        sources.push_back({id, provider.GetSeries(symbols.name(id))});
      }
    }
    formula::VariableStore store(symbols);
    const formula::Node& root = *parser.root();
    const int count = provider.GetPointsCount();
    points.reserve(static_cast<std::size_t>(count));
    for (auto i = static_cast<int>(first); i < count; ++i) {
      const double abscissa = provider.GetAbscissa(i);
      if (needsAbscissa) store.set(abscissaId, abscissa);
      for (const Source& source : sources) {
        const auto index = static_cast<std::size_t>(i);
        store.set(source.id, source.series != nullptr && index < source.series->size()
                                 ? (*source.series)[index]
                                 : std::numeric_limits<double>::quiet_NaN());
      }
      points.emplace_back(abscissa, root.Calc(store));
    }
  } catch (const formula::FormulaError&) {
    points.clear();
    return false;
  }
  return true;
}

bool CustomPlot::setFormula(const formula::QuantityDataProvider& provider,
                            const std::string& formula) {
  PlotPoints points;
  if (!computePlotPoints(provider, formula, 0, points)) {
    points_.clear();
    return false;
  }
  formula_ = formula;
  points_ = std::move(points);
  return true;
}

void CustomPlot::update(const formula::QuantityDataProvider& provider, bool fromScratch) {
  if (fromScratch || static_cast<int>(points_.size()) > provider.GetPointsCount()) points_.clear();
  // A point computed while one of its variables had no value there yet (a
  // motion or per-time-step history grows more slowly than the force rows)
  // reads NaN: compute it again, as the value may have arrived since.
  const auto unsettled = std::find_if(points_.begin(), points_.end(),
                                      [](const auto& point) { return std::isnan(point.second); });
  points_.erase(unsettled, points_.end());
  computePlotPoints(provider, formula_, points_.size(), points_);
}

int CustomPlots::add(const std::string& formula) {
  plots_.emplace_back();
  if (!plots_.back().setFormula(provider_, formula)) {
    plots_.pop_back();
    return -1;
  }
  return static_cast<int>(plots_.size()) - 1;
}

bool CustomPlots::edit(std::size_t number, const std::string& formula) {
  return plots_[number].setFormula(provider_, formula);
}

void CustomPlots::remove(std::size_t number) {
  plots_.erase(plots_.begin() + static_cast<std::ptrdiff_t>(number));
}

void CustomPlots::update(bool fromScratch) {
  for (CustomPlot& plot : plots_) plot.update(provider_, fromScratch);
}

}  // namespace marine
