// The force and moment histories of one body or sub-body: per component file
// the value of every iteration, and in unsteady runs one converged value per
// physical time step for each "Dyn" quantity. Forces and moments are kept and
// read by the same code, indexed by the component.
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
    for (Histories& component : components_) component.seriesOf.fill(-1);
  }

  // Gives every "Dyn" quantity its converged series (unsteady runs) or none.
  void setConvergedSeries(bool unsteady);

  // Stores one value of a row: a row with a time of 0 or more feeds the
  // history `index`; a converged row (negative time) feeds converged series
  // `index`. False (with a message) for an index outside them.
  bool store(Component component, double time, int index, double value);
  void reserve(Component component, int index, std::size_t count);

  // One element of the history of a named quantity ("Fx", or "FxDyn" for the
  // converged series); 0 with a message for an unknown name or element.
  double element(Component component, std::string_view name, long long element) const;
  // One converged value of a quantity given by its index; 0 with a message
  // for a quantity without converged values or a step they do not hold.
  double converged(Component component, int quantity, long long step) const;
  // How many converged values a quantity holds, as the length and as the
  // current iteration of the convergence history (each with its own message
  // for a quantity without them).
  int convergedLength(Component component, int quantity) const;
  int convergedIterations(Component component, int quantity) const;
  // How many values the history of a named quantity holds.
  int realTimesteps(Component component, std::string_view name) const;

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
    return of(component).currentIterations;
  }

 private:
  // Everything kept for one component.
  struct Histories {
    std::array<std::vector<double>, kComponentFiles> perFile;
    std::vector<std::vector<double>> series;
    std::array<int, kMomentNames.size()> seriesOf{};
    CurrentIterations currentIterations;
  };

  Histories& of(Component component) { return components_[static_cast<std::size_t>(component)]; }
  const Histories& of(Component component) const {
    return components_[static_cast<std::size_t>(component)];
  }

  std::string_view owner_;
  std::array<Histories, 2> components_;
};

}  // namespace marine
