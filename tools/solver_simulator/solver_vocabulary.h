// The names the marine solver writes: its residuals, its 18 force and moment
// files, the motion columns of a moving body and the actuator-disk quantities.
#pragma once

#include <array>
#include <string_view>

namespace solver_simulator {

// Momentum, pressure and k-omega turbulence equations.
inline constexpr std::array<std::string_view, 6> kResidualNames = {"ResU", "ResV", "ResW",
                                                                   "ResP", "ResK", "Res`w"};

// Force and moment components, in file order.
inline constexpr std::array<std::string_view, 6> kLoadComponents = {"Fx", "Fy", "Fz",
                                                                    "Mx", "My", "Mz"};

enum class LoadPart { total, pressure, viscous };

struct LoadFile {
  std::string_view fileName;
  std::string_view quantity;
  int component;  // position in kLoadComponents
  LoadPart part;
};

// Per component: the total, its pressure part and its viscous part.
inline constexpr std::array<LoadFile, 18> kLoadFiles = {{
    {"eff_Fx.dat", "Fx", 0, LoadPart::total},
    {"eff_FxP.dat", "FxP", 0, LoadPart::pressure},
    {"eff_FxV.dat", "FxV", 0, LoadPart::viscous},
    {"eff_Fy.dat", "Fy", 1, LoadPart::total},
    {"eff_FyP.dat", "FyP", 1, LoadPart::pressure},
    {"eff_FyV.dat", "FyV", 1, LoadPart::viscous},
    {"eff_Fz.dat", "Fz", 2, LoadPart::total},
    {"eff_FzP.dat", "FzP", 2, LoadPart::pressure},
    {"eff_FzV.dat", "FzV", 2, LoadPart::viscous},
    {"eff_Mx.dat", "Mx", 3, LoadPart::total},
    {"eff_MxP.dat", "MxP", 3, LoadPart::pressure},
    {"eff_MxV.dat", "MxV", 3, LoadPart::viscous},
    {"eff_My.dat", "My", 4, LoadPart::total},
    {"eff_MyP.dat", "MyP", 4, LoadPart::pressure},
    {"eff_MyV.dat", "MyV", 4, LoadPart::viscous},
    {"eff_Mz.dat", "Mz", 5, LoadPart::total},
    {"eff_MzP.dat", "MzP", 5, LoadPart::pressure},
    {"eff_MzV.dat", "MzV", 5, LoadPart::viscous},
}};

// Translations (m) and rotations (rad) of a moving body.
inline constexpr std::array<std::string_view, 6> kMotionColumns = {"X",   "Y",     "Z",
                                                                   "PHI", "THETA", "PSI"};

// Quantities of each actuator disk, numbered after the disk ("Thrust1").
inline constexpr std::array<std::string_view, 2> kDiskQuantities = {"Thrust", "Torque"};

}  // namespace solver_simulator
