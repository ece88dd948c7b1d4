// The force and moment histories of one body or sub-body: per component file
// the value of every iteration, and in unsteady runs one converged value per
// physical time step for each "Dyn" quantity.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "marine/current_iterations.h"
#include "marine/marine_names.h"

namespace marine {

enum class Component { force, moment };

class ComponentHistories {
 public:
  // `owner` names the class in messages ("BodyObject" or "SubBodyObject").
  explicit ComponentHistories(std::string_view owner) : owner_(owner) {
    forceSeriesOf_.fill(-1);
    momentSeriesOf_.fill(-1);
  }

  // Gives every "Dyn" quantity its converged series (unsteady runs) or none.
  void setConvergedSeries(bool unsteady);

  // Stores one value of a row: a row with a time of 0 or more feeds the
  // history `index`; a converged row (negative time) feeds converged series
  // `index`. False (with a message) for an index outside them.
  bool store(Component component, double time, int index, double value);
  void reserve(Component component, int index, std::size_t count) {
    if (index < 0 || index >= kComponentFiles) return;
    (component == Component::force ? forces_ : moments_)[static_cast<std::size_t>(index)].reserve(
        count);
  }

  // One element of the history of a named quantity ("Fx", or "FxDyn" for the
  // converged series); 0 with a message for an unknown name or element.
  double getForce(std::string_view name, long long element) const;
  double getMoment(std::string_view name, long long element) const;
  double getForceConv(int quantity, long long step) const;
  double getMomentConv(int quantity, long long step) const;
  int getForceConvLength(int quantity) const;
  int getMomentConvLength(int quantity) const;
  int nbIterForceConv(int quantity) const;
  int nbIterMomentConv(int quantity) const;
  int realForcesTimesteps(std::string_view name) const;
  int realMomentsTimesteps(std::string_view name) const;

  // Number of converged series of each component (9 in an unsteady run).
  int convergedSeriesCount(Component component) const;

  // The values behind a quantity of the force or moment table: the history
  // of a plain quantity, the converged series of a "Dyn" quantity; null for
  // a quantity without either.
  const std::vector<double>* history(Component component, int quantity) const;

  // The converged values per time step of a quantity; null for a quantity
  // without them (any quantity of a steady run).
  const std::vector<double>* convergedSeries(Component component, int quantity) const;

  // The scripts' current position on each force or moment quantity.
  CurrentIterations& currentIterations(Component component) {
    return component == Component::force ? currentForces_ : currentMoments_;
  }

 private:
  using Histories = std::array<std::vector<double>, kComponentFiles>;
  using SeriesMap = std::array<int, kMomentNames.size()>;

  double getElement(Component component, std::string_view operation, std::string_view name,
                    long long element) const;
  double getConv(Component component, int quantity, long long step) const;
  int convLength(Component component, int quantity) const;
  int nbIterConv(Component component, int quantity) const;
  int realTimesteps(Component component, std::string_view name) const;

  std::string_view owner_;
  Histories forces_;
  Histories moments_;
  std::vector<std::vector<double>> forceSeries_;
  std::vector<std::vector<double>> momentSeries_;
  SeriesMap forceSeriesOf_;
  SeriesMap momentSeriesOf_;
  CurrentIterations currentForces_;
  CurrentIterations currentMoments_;
};

}  // namespace marine
