// The curves of a turbomachinery residual history, named as its curve table
// names them (turbo/curve_names.h), against the iteration number:
//
//   WorkUnit, pu, Lift, Axial thrust, Torque, Qmax, Tmax, In, Out
//                              the global values
//   rms_d_block1, max_d_block1, ...
//                              per block (from 1), the rms and maximum
//                              residual of each equation the header declares:
//                              d wx wy wz E, then bladeForce (module TF), then
//                              k eps (K-E), k omega (K-O) or nu (SPL-ALM),
//                              then the species and harmonics by the names
//                              the header gives them
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "turbo/res_file.h"
#include "watch/named_curve.h"

namespace watch {

// An equation of the history: the name its curves carry, and the name by
// which the curve table places its residuals ("omega" stands where the table
// puts "eps"; a species or harmonic where it puts "harm<n>").
struct TurboEquation {
  std::string name;
  std::string tableName;
};

std::vector<TurboEquation> turboEquations(const turbo::ResFile& file);

// "rms_d_block1": `kind` "rms" or "max", `block` from 0.
std::string blockCurveName(std::string_view kind, std::string_view equation, std::uint32_t block);

std::vector<NamedCurve> turboCurves(const turbo::ResFile& file);

}  // namespace watch
