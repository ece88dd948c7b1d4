#include "watch/help_text.h"

namespace watch {

std::string_view helpText() {
  return R"(usage: monitor-watch [options] RESIDUAL_FILE...

Follows one or more CFD computations, given by their residual files, without
a display: reads them as the monitor's window does, judges whether each curve
has converged, and writes a table, JSON lines or CSV files at every refresh.
Messages of the reading (a new run, a file that disappeared, a damaged line)
go to standard error.

Mode (each file's mode is recognised from its first character: '#' for a
marine residual file, a number for a turbomachinery one):
  --marine                 read every file as a marine computation
  --turbo                  read every file as a turbomachinery computation

Refresh:
  --every SECONDS          read the files again every SECONDS (default 5;
                           fractions allowed)
  --once                   read the files once, write the output and end
                           (not with --timeout or --stall)

Curves:
  marine                   the residuals ResU, ResV, ... ; motions X_hull, ... ;
                           forces and moments of each body and sub-body
                           Fx_hull, MzV_keel, ... ; in an unsteady run the
                           converged value of each time step FxDyn_hull, ... ;
                           the actuator-disk quantities Thrust1, ... and the
                           user quantities of user_data.csv by their titles
  turbomachinery           the global values WorkUnit, pu, Lift, Axial thrust,
                           Torque, Qmax, Tmax, In, Out, and per block b the rms
                           and maximum residuals rms_d_block1, max_E_block2,
                           ... of the equations d wx wy wz E, bladeForce (TF),
                           k eps, k omega or nu, and the species and harmonics
                           by the header's names
  --formula NAME=EXPR      add the curve NAME, computed over the marine
                           variables by a formula: --formula 'mean=(Fx_hull +
                           Fx_rudder)/2'; repeatable; marine computations
                           only; a curve of the same name hides it
  --curves A,B,...         show only these curves, in this order (repeatable)

Output:
  (default)                a table per computation: curve, points, last
                           value, mean ± half-width, verdict; on a terminal
                           rewritten at each refresh
  --json                   one JSON object per refresh, on one line:
                           {"time": ISO 8601, "computations": [{"path",
                           "mode": "marine"|"turbomachinery", "stamp" (or
                           null), "rows", "curves": [{"name", "points",
                           "last", "transientEnd", "mean", "halfWidth",
                           "confidence", "drift", "period", "verdict"}]}]};
                           a value the curve does not have is null
  --csv DIR                also write each shown curve as DIR/<computation>/
                           <curve>.csv ("abscissa,value", one line a point),
                           written whole and renamed at each refresh that
                           judged it again; <computation> is the residual
                           file's name without extension (then -2, -3, ...)

Verdict (as in the window: docs/convergence.md):
  --confidence LEVEL       confidence of the interval of the mean (default
                           0.95)
  --tolerance FRACTION     largest half-width relative to the mean (default
                           0.01)
  Verdicts: converged, transient, drifting, wide, short (fewer than 100
  points, or too few independent ones).

Ending, for job scripts:
  --until-converged A,B    end with status 0 as soon as every listed curve has
                           converged in every computation
  --timeout SECONDS        with --until-converged: end with status 2 when they
                           have not by then
  --stall SECONDS          end with status 3 when no file has grown for that
                           long
  Without them the watch goes on until SIGINT or SIGTERM, which end it once
  the output of the last refresh is written (status 130 or 143). Bad
  arguments, or no residual file that can be read, end it with status 1 and
  one line on standard error. With --once, the status is 0, or 2 when curves
  of --until-converged have not converged.

Robustness: a restarted run (new creation stamp, or files rewritten) starts
its curves over and says so on standard error; a file deleted or damaged
leaves what was read from it, and the watch goes on.

  -h, --help               this text
)";
}

}  // namespace watch
