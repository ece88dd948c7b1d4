#include "marine/component_histories.h"

#include <optional>

#include "platform/console.h"

namespace marine {
namespace {

constexpr int kQuantities = 18;

std::string text(long long value) { return std::to_string(value); }

// How the messages name a component: "Force" in "getForce", "Forces" in
// "readForces", "force" in "wrong force index".
struct ComponentWords {
  const char* name;
  const char* plural;
  const char* noun;
};

constexpr std::array<ComponentWords, 2> kWords = {ComponentWords{"Force", "Forces", "force"},
                                                  ComponentWords{"Moment", "Moments", "moment"}};

const ComponentWords& wordsOf(Component component) {
  return kWords[static_cast<std::size_t>(component)];
}

std::optional<int> quantityNamed(Component component, std::string_view name) {
  return component == Component::force ? indexIn(kForceNames, name) : indexIn(kMomentNames, name);
}

}  // namespace

void ComponentHistories::setConvergedSeries(bool unsteady) {
  for (Histories& component : components_) {
    component.seriesOf.fill(-1);
    component.series.clear();
    if (!unsteady) continue;
    // File k's converged rows form series k: the convergence history of its
    // quantity 2k and the values of its per-time-step quantity 2k + 1.
    for (int file = 0; file < kComponentFiles; ++file) {
      component.seriesOf[static_cast<std::size_t>(2 * file)] = file;
      component.seriesOf[static_cast<std::size_t>(2 * file + 1)] = file;
    }
    component.series.resize(kComponentFiles);
  }
}

bool ComponentHistories::store(Component component, double time, int index, double value) {
  Histories& histories = of(component);
  if (time >= 0.0) {
    if (index < 0 || index >= kComponentFiles) return false;
    histories.perFile[static_cast<std::size_t>(index)].push_back(value);
    return true;
  }
  if (index < 0 || index >= static_cast<int>(histories.series.size())) {
    platform::consoleLine(std::string(owner_) + "::read" + wordsOf(component).plural +
                          " wrong index");
    return false;
  }
  histories.series[static_cast<std::size_t>(index)].push_back(value);
  return true;
}

void ComponentHistories::reserve(Component component, int index, std::size_t count) {
  if (index < 0 || index >= kComponentFiles) return;
  of(component).perFile[static_cast<std::size_t>(index)].reserve(count);
}

const std::vector<double>* ComponentHistories::history(Component component, int quantity) const {
  if (const std::optional<int> file = fileOfQuantity(quantity)) {
    return &of(component).perFile[static_cast<std::size_t>(*file)];
  }
  return convergedSeries(component, quantity);
}

const std::vector<double>* ComponentHistories::convergedSeries(Component component,
                                                               int quantity) const {
  if (quantity < 0 || quantity >= kQuantities) return nullptr;
  const Histories& histories = of(component);
  const int series = histories.seriesOf[static_cast<std::size_t>(quantity)];
  return series < 0 || series >= static_cast<int>(histories.series.size())
             ? nullptr
             : &histories.series[static_cast<std::size_t>(series)];
}

double ComponentHistories::element(Component component, std::string_view name,
                                   long long element) const {
  // The messages are made only when needed: this runs once per point asked.
  const auto complain = [&](const std::string& what) {
    platform::consoleLine("Error in " + std::string(owner_) + "::get" + wordsOf(component).name +
                          "! Curve '" + std::string(name) + "'" + what);
    return 0.0;
  };
  const std::optional<int> quantity = quantityNamed(component, name);
  if (!quantity) return complain(" is not found.");
  const std::vector<double>* values = history(component, *quantity);
  const std::size_t count = values == nullptr ? 0 : values->size();
  if (element < 0 || static_cast<std::size_t>(element) >= count) {
    return complain(" has only " + text(static_cast<long long>(count)) +
                    " elements while element #" + text(element) + " was requested.");
  }
  return (*values)[static_cast<std::size_t>(element)];
}

double ComponentHistories::converged(Component component, int quantity, long long step) const {
  const auto complain = [&](const std::string& what) {
    platform::consoleLine(std::string(owner_) + "::get" + wordsOf(component).name + "Conv" + what);
    return 0.0;
  };
  if (quantity < 0 || quantity >= kQuantities)
    return complain(" wrong curve index " + text(quantity));
  const Histories& histories = of(component);
  const int series = histories.seriesOf[static_cast<std::size_t>(quantity)];
  if (series < 0 || series >= static_cast<int>(histories.series.size()))
    return complain(" wrong converted curve index " + text(series));
  const std::vector<double>& values = histories.series[static_cast<std::size_t>(series)];
  if (step < 0 || static_cast<std::size_t>(step) >= values.size()) {
    return complain(" wrong iteration number " + text(step) +
                    " (n = " + text(static_cast<long long>(values.size())) + ")");
  }
  return values[static_cast<std::size_t>(step)];
}

int ComponentHistories::convergedLength(Component component, int quantity) const {
  const auto complain = [&](const char* converted) {
    const ComponentWords& words = wordsOf(component);
    // A body's force variant speaks with the sub-body's words.
    const std::string owner = component == Component::force ? "SubBodyObject" : std::string(owner_);
    platform::consoleLine(owner + "::get" + words.name + "ConvLength wrong " + converted +
                          words.noun + " index " + text(quantity));
    return 0;
  };
  if (quantity < 0 || quantity >= kQuantities) return complain("");
  const std::vector<double>* series = convergedSeries(component, quantity);
  if (series == nullptr) return complain("converted ");
  return static_cast<int>(series->size());
}

int ComponentHistories::convergedIterations(Component component, int quantity) const {
  const auto complain = [&](const char* converted) {
    platform::consoleLine(std::string(owner_) + "::nbIter" + wordsOf(component).name +
                          "Conv (getter) wrong " + converted + "index " + text(quantity));
    return 0;
  };
  if (quantity < 0 || quantity >= kQuantities) return complain("");
  const std::vector<double>* series = convergedSeries(component, quantity);
  if (series == nullptr) return complain("converted ");
  return static_cast<int>(series->size());
}

int ComponentHistories::realTimesteps(Component component, std::string_view name) const {
  const std::optional<int> quantity = quantityNamed(component, name);
  if (!quantity) {
    platform::consoleLine("Error in " + std::string(owner_) + "::real" + wordsOf(component).plural +
                          "Timesteps! Unknown curve name '" + std::string(name) + "'.");
    return 0;
  }
  const std::vector<double>* values = history(component, *quantity);
  return values == nullptr ? 0 : static_cast<int>(values->size());
}

int ComponentHistories::convergedSeriesCount(Component component) const {
  return static_cast<int>(of(component).series.size());
}

}  // namespace marine
