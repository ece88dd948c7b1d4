#include "marine/component_histories.h"

#include "platform/console.h"

namespace marine {
namespace {

constexpr int kQuantities = 18;

std::string text(long long value) { return std::to_string(value); }

}  // namespace

void ComponentHistories::setConvergedSeries(bool unsteady) {
  forceSeriesOf_.fill(-1);
  momentSeriesOf_.fill(-1);
  forceSeries_.clear();
  momentSeries_.clear();
  if (!unsteady) return;
  // File k's converged rows form series k: the convergence history of its
  // quantity 2k and the values of its per-time-step quantity 2k + 1.
  for (int file = 0; file < kComponentFiles; ++file) {
    for (const int quantity : {2 * file, 2 * file + 1}) {
      forceSeriesOf_[static_cast<std::size_t>(quantity)] = file;
      momentSeriesOf_[static_cast<std::size_t>(quantity)] = file;
    }
  }
  forceSeries_.resize(kComponentFiles);
  momentSeries_.resize(kComponentFiles);
}

bool ComponentHistories::store(Component component, double time, int index, double value) {
  const bool force = component == Component::force;
  if (time >= 0.0) {
    Histories& histories = force ? forces_ : moments_;
    if (index < 0 || index >= kComponentFiles) return false;
    histories[static_cast<std::size_t>(index)].push_back(value);
    return true;
  }
  std::vector<std::vector<double>>& series = force ? forceSeries_ : momentSeries_;
  if (index < 0 || index >= static_cast<int>(series.size())) {
    platform::consoleLine(std::string(owner_) + (force ? "::readForces" : "::readMoments") +
                          " wrong index");
    return false;
  }
  series[static_cast<std::size_t>(index)].push_back(value);
  return true;
}

const std::vector<double>* ComponentHistories::history(Component component, int quantity) const {
  const bool force = component == Component::force;
  if (const std::optional<int> file = fileOfQuantity(quantity)) {
    return &(force ? forces_ : moments_)[static_cast<std::size_t>(*file)];
  }
  if (quantity < 0 || quantity >= kQuantities) return nullptr;
  const int series = (force ? forceSeriesOf_ : momentSeriesOf_)[static_cast<std::size_t>(quantity)];
  const auto& all = force ? forceSeries_ : momentSeries_;
  return series < 0 ? nullptr : &all[static_cast<std::size_t>(series)];
}

const std::vector<double>* ComponentHistories::convergedSeries(Component component,
                                                               int quantity) const {
  if (quantity < 0 || quantity >= kQuantities) return nullptr;
  const bool force = component == Component::force;
  const int series = (force ? forceSeriesOf_ : momentSeriesOf_)[static_cast<std::size_t>(quantity)];
  const auto& all = force ? forceSeries_ : momentSeries_;
  return series < 0 || series >= static_cast<int>(all.size())
             ? nullptr
             : &all[static_cast<std::size_t>(series)];
}

double ComponentHistories::getElement(Component component, std::string_view operation,
                                      std::string_view name, long long element) const {
  const std::string prefix = "Error in " + std::string(owner_) + "::" + std::string(operation) +
                             "! Curve '" + std::string(name) + "'";
  const std::optional<int> quantity =
      component == Component::force ? indexIn(kForceNames, name) : indexIn(kMomentNames, name);
  if (!quantity) {
    platform::consoleLine(prefix + " is not found.");
    return 0.0;
  }
  const std::vector<double>* values = history(component, *quantity);
  const std::size_t count = values == nullptr ? 0 : values->size();
  if (element < 0 || static_cast<std::size_t>(element) >= count) {
    platform::consoleLine(prefix + " has only " + text(static_cast<long long>(count)) +
                          " elements while element #" + text(element) + " was requested.");
    return 0.0;
  }
  return (*values)[static_cast<std::size_t>(element)];
}

double ComponentHistories::getForce(std::string_view name, long long element) const {
  return getElement(Component::force, "getForce", name, element);
}

double ComponentHistories::getMoment(std::string_view name, long long element) const {
  return getElement(Component::moment, "getMoment", name, element);
}

double ComponentHistories::getConv(Component component, int quantity, long long step) const {
  const bool force = component == Component::force;
  const std::string prefix = std::string(owner_) + (force ? "::getForceConv" : "::getMomentConv");
  if (quantity < 0 || quantity >= kQuantities) {
    platform::consoleLine(prefix + " wrong curve index " + text(quantity));
    return 0.0;
  }
  const int series = (force ? forceSeriesOf_ : momentSeriesOf_)[static_cast<std::size_t>(quantity)];
  const auto& all = force ? forceSeries_ : momentSeries_;
  if (series < 0 || series >= static_cast<int>(all.size())) {
    platform::consoleLine(prefix + " wrong converted curve index " + text(series));
    return 0.0;
  }
  const std::vector<double>& values = all[static_cast<std::size_t>(series)];
  if (step < 0 || static_cast<std::size_t>(step) >= values.size()) {
    platform::consoleLine(prefix + " wrong iteration number " + text(step) +
                          " (n = " + text(static_cast<long long>(values.size())) + ")");
    return 0.0;
  }
  return values[static_cast<std::size_t>(step)];
}

double ComponentHistories::getForceConv(int quantity, long long step) const {
  return getConv(Component::force, quantity, step);
}

double ComponentHistories::getMomentConv(int quantity, long long step) const {
  return getConv(Component::moment, quantity, step);
}

int ComponentHistories::convLength(Component component, int quantity) const {
  const bool force = component == Component::force;
  // A body's force variant speaks with the sub-body's words.
  const std::string prefix = force ? "SubBodyObject::getForceConvLength wrong "
                                   : std::string(owner_) + "::getMomentConvLength wrong ";
  const std::string what = force ? "force index " : "moment index ";
  if (quantity < 0 || quantity >= kQuantities) {
    platform::consoleLine(prefix + what + text(quantity));
    return 0;
  }
  const int series = (force ? forceSeriesOf_ : momentSeriesOf_)[static_cast<std::size_t>(quantity)];
  const auto& all = force ? forceSeries_ : momentSeries_;
  if (series < 0 || series >= static_cast<int>(all.size())) {
    platform::consoleLine(prefix + "converted " + what + text(quantity));
    return 0;
  }
  return static_cast<int>(all[static_cast<std::size_t>(series)].size());
}

int ComponentHistories::getForceConvLength(int quantity) const {
  return convLength(Component::force, quantity);
}

int ComponentHistories::getMomentConvLength(int quantity) const {
  return convLength(Component::moment, quantity);
}

int ComponentHistories::nbIterConv(Component component, int quantity) const {
  const bool force = component == Component::force;
  const std::string prefix = std::string(owner_) +
                             (force ? "::nbIterForceConv" : "::nbIterMomentConv") +
                             " (getter) wrong ";
  if (quantity < 0 || quantity >= kQuantities) {
    platform::consoleLine(prefix + "index " + text(quantity));
    return 0;
  }
  const int series = (force ? forceSeriesOf_ : momentSeriesOf_)[static_cast<std::size_t>(quantity)];
  const auto& all = force ? forceSeries_ : momentSeries_;
  if (series < 0 || series >= static_cast<int>(all.size())) {
    platform::consoleLine(prefix + "converted index " + text(quantity));
    return 0;
  }
  return static_cast<int>(all[static_cast<std::size_t>(series)].size());
}

int ComponentHistories::nbIterForceConv(int quantity) const {
  return nbIterConv(Component::force, quantity);
}

int ComponentHistories::nbIterMomentConv(int quantity) const {
  return nbIterConv(Component::moment, quantity);
}

int ComponentHistories::realTimesteps(Component component, std::string_view name) const {
  const bool force = component == Component::force;
  const std::optional<int> quantity =
      force ? indexIn(kForceNames, name) : indexIn(kMomentNames, name);
  const std::vector<double>* values = quantity ? history(component, *quantity) : nullptr;
  if (!quantity) {
    platform::consoleLine("Error in " + std::string(owner_) +
                          (force ? "::realForcesTimesteps" : "::realMomentsTimesteps") +
                          "! Unknown curve name '" + std::string(name) + "'.");
    return 0;
  }
  return values == nullptr ? 0 : static_cast<int>(values->size());
}

int ComponentHistories::realForcesTimesteps(std::string_view name) const {
  return realTimesteps(Component::force, name);
}

int ComponentHistories::realMomentsTimesteps(std::string_view name) const {
  return realTimesteps(Component::moment, name);
}

int ComponentHistories::convergedSeriesCount(Component component) const {
  return static_cast<int>((component == Component::force ? forceSeries_ : momentSeries_).size());
}

}  // namespace marine
