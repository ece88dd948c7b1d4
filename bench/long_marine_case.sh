# Sourced by the window benchmarks after tools/temporary_installation.sh:
# writes a finished steady marine run with the solver stand-in and lengthens
# its residual file to $rows rows, in the solver's format. The caller has set
# `rows`; afterwards
#   $case_folder  the computation's folder
#   $res          its residual file
case_folder=$work/case
"$solver" --out "$case_folder" --steady --iterations 1000 --stamp "21/11/2026 14:05:09" >/dev/null
# The solver's own rows, then rows in its format up to ROWS.
awk -v rows="$rows" '{ print } END {
  for (i = 1001; i <= rows; i++)
    printf "%d %.2f %.4e %.4e %.4e %.4e %.4e %.4e\n", i, i * 0.41, 1e-7 * (1 + 0.3 * sin(i * 0.01)),
      9e-8, 8e-8, 8e-8, 1e-7, 1e-7
}' "$case_folder/ship.res" > "$case_folder/ship.res.long"
mv "$case_folder/ship.res.long" "$case_folder/ship.res"
res=$case_folder/ship.res
