#!/usr/bin/env tclsh
# Writes a small turbomachinery case for trying the monitor:
#
#   stage.res    residual history of a converging steady run: long header,
#                2 blocks, module 3D with K-E and two species (9 equations),
#                one record per iteration (9 global values, then max and rms
#                residual of every equation of every block);
#   blade.diag   blade-loading diagram: isentropic Mach number along the chord
#                on the suction side (Extrado) and the pressure side (Intrado),
#                at a section near the hub (_1) and one near the tip (_2);
#   blade.prof   the blade section itself: suction side (Extrado) and pressure
#                side (Intrado), x y in metres.
#
# Usage:
#   tclsh write_case.tcl ?--out DIR? ?--records N? ?--live SECONDS? ?--restart?
#
#   --out DIR        folder to write into (default: this script's folder)
#   --records N      records in the initial history (default 300)
#   --live SECONDS   then keep appending one record about every 0.5 s for that
#                    long, like a running solver; about one record in three is
#                    written in two pieces (half a line, a pause, the rest)
#   --restart        before going live, rewrite stage.res from its top as a
#                    new run (a fresh header and 10 records from iteration 1)
#
# The output depends only on the options: the noise comes from a generator
# with a fixed seed, so the default run always writes the same files.

package require Tcl 8.6

namespace eval ::case {
    # Shape of the history: 2 blocks of 5 flow + 2 turbulence + 2 species.
    variable blocks 2
    variable equations {d wx wy wz E k eps sp1 sp2}
    # Starting log10 rms level and decades lost per 100 iterations of each
    # equation; the floor where convergence stalls.
    variable startLevel {-2.1 -1.6 -1.7 -2.0 -1.3 -2.6 -0.9 -3.0 -3.3}
    variable decadesPer100 {1.45 1.35 1.35 1.40 1.30 0.95 1.05 1.15 1.20}
    variable floorLevel -8.2
    # Values the integrated quantities settle to, in record order after the
    # work unit: pu, Lift, Axial thrust, Torque, Qmax, Tmax, In, Out.
    variable settled {1.835 412.7 -1530.4 86.42 2.37e-2 342.6 12.84 12.84}
    # Their relative swing at the start.
    variable swing {0.06 0.35 0.22 0.30 0.80 0.04 0.09 0.14}

    variable seed 20260217
    variable state 0
    variable workUnit 0.0
}

# --- noise -------------------------------------------------------------------

# Uniform in [0, 1) from a 31-bit linear congruential generator.
proc ::case::uniform {} {
    variable state
    set state [expr {($state * 1103515245 + 12345) % 2147483648}]
    return [expr {double($state) / 2147483648.0}]
}

# Roughly normal, mean 0, standard deviation 1.
proc ::case::gauss {} {
    return [expr {([uniform] + [uniform] + [uniform] + [uniform] - 2.0) * 1.7320508}]
}

proc ::case::startRun {runSeed} {
    variable state $runSeed
    variable workUnit 0.0
}

# --- residual history --------------------------------------------------------

proc ::case::header {} {
    variable blocks
    # Marker, version, blocks, module, turbulence model, species names, no
    # second list, residuals-per-row choice, mode, application.
    return "0\n3.0\n$blocks\n3D\nK-E\n2 sp1 sp2\n0\n1\nSTEADY\nTURBO\n"
}

# One record: the iteration number, the 9 global values, then max and rms of
# every equation, block by block. `run` shifts the levels a little so that a
# restarted run does not repeat the first one.
proc ::case::record {iteration {run 0}} {
    variable blocks
    variable equations
    variable startLevel
    variable decadesPer100
    variable floorLevel
    variable settled
    variable swing
    variable workUnit

    set i [expr {double($iteration)}]
    # One iteration costs about 1.25 work units, a little more or less.
    set workUnit [expr {$workUnit + 1.25 + 0.04 * [gauss]}]
    set values [list $workUnit]

    # Integrated quantities: a damped oscillation around the settled value.
    set damp [expr {exp(-$i / 70.0)}]
    set k 0
    foreach target $settled amplitude $swing {
        set period [expr {38.0 + 6.0 * $k}]
        set wave [expr {cos(6.2831853 * $i / $period + 0.7 * $k + 0.3 * $run)}]
        set value [expr {$target * (1.0 + $amplitude * $damp * $wave
                                    + 0.002 * $damp * [gauss] + 0.0001 * [gauss])}]
        lappend values $value
        incr k
    }

    # Residuals: a short start-up bump, then an exponential fall with noise,
    # down to a floor; the max a factor of about 4 above the rms.
    set bump [expr {0.35 * exp(-((($i - 12.0) / 8.0) ** 2))}]
    for {set b 0} {$b < $blocks} {incr b} {
        foreach name $equations start $startLevel rate $decadesPer100 {
            set level [expr {$start - 0.15 * $b + 0.05 * $run + $bump
                             - $rate * $i / 100.0 * (1.0 - 0.08 * $b)}]
            if {$level < $floorLevel} {
                set level [expr {$floorLevel + 0.1 * ($level - $floorLevel) / 10.0}]
            }
            set rmsLevel [expr {$level + 0.06 * [gauss]
                                + 0.05 * sin($i / 9.0 + $b)}]
            set maxLevel [expr {$rmsLevel + 0.55 + 0.12 * [gauss]}]
            lappend values [expr {10.0 ** $maxLevel}] [expr {10.0 ** $rmsLevel}]
        }
    }

    set line [format %6d $iteration]
    foreach value $values {
        append line " " [format %.6e $value]
    }
    return $line
}

proc ::case::writeHistory {path records runSeed {run 0}} {
    startRun $runSeed
    set channel [open $path w]
    fconfigure $channel -translation lf
    puts -nonewline $channel [header]
    for {set it 1} {$it <= $records} {incr it} {
        puts $channel [record $it $run]
    }
    close $channel
}

# --- blade files -------------------------------------------------------------

# Fraction of chord of point k of n, closer together at both edges.
proc ::case::chordFraction {k n} {
    return [expr {0.5 * (1.0 - cos(3.14159265 * $k / ($n - 1)))}]
}

# Isentropic Mach number on the suction side: fast acceleration from the
# leading edge to a peak, then diffusion to the trailing edge.
proc ::case::suctionMach {x peak peakAt exit} {
    set rise [expr {0.18 + ($peak - 0.18) * (1.0 - exp(-$x / 0.05))}]
    if {$x <= $peakAt} {
        return $rise
    }
    return [expr {$rise - ($peak - $exit) * (($x - $peakAt) / (1.0 - $peakAt)) ** 1.25}]
}

# On the pressure side: slow acceleration, a little dip after the leading
# edge.
proc ::case::pressureMach {x exit} {
    return [expr {0.26 + ($exit - 0.26) * $x ** 1.7 - 0.05 * exp(-$x / 0.08)
                  + 0.05 * exp(-$x / 0.01)}]
}

proc ::case::writeDiagram {path points} {
    set channel [open $path w]
    fconfigure $channel -translation lf
    # Hub section: lower Mach numbers; tip section: a peak just above 1.
    puts $channel $points
    for {set k 0} {$k < $points} {incr k} {
        set x [chordFraction $k $points]
        puts $channel [format "%.5f %.5f %.5f %.5f" $x $x \
                           [suctionMach $x 0.86 0.32 0.58] [suctionMach $x 1.07 0.41 0.66]]
    }
    puts $channel $points
    for {set k 0} {$k < $points} {incr k} {
        set x [chordFraction $k $points]
        puts $channel [format "%.5f %.5f %.5f %.5f" $x $x \
                           [pressureMach $x 0.58] [pressureMach $x 0.66]]
    }
    close $channel
}

# A cambered section with a rounded leading edge and a closed trailing edge,
# staggered and scaled to a 60 mm chord. `side` is 1 for the suction side,
# -1 for the pressure side.
proc ::case::sectionPoint {x side} {
    set thickness 0.11
    set camber 0.09
    set stagger [expr {32.0 * 3.14159265 / 180.0}]
    set chord 0.060
    set half [expr {5.0 * $thickness * (0.2969 * sqrt($x) - 0.1260 * $x - 0.3516 * $x ** 2
                                        + 0.2843 * $x ** 3 - 0.1036 * $x ** 4)}]
    set yc [expr {4.0 * $camber * $x * (1.0 - $x)}]
    set slope [expr {atan(4.0 * $camber * (1.0 - 2.0 * $x))}]
    set u [expr {$x - $side * $half * sin($slope)}]
    set v [expr {$yc + $side * $half * cos($slope)}]
    set px [expr {$chord * ($u * cos($stagger) + $v * sin($stagger))}]
    set py [expr {$chord * (-$u * sin($stagger) + $v * cos($stagger))}]
    return [list $px $py]
}

proc ::case::writeProfile {path points} {
    set channel [open $path w]
    fconfigure $channel -translation lf
    foreach side {1 -1} {
        puts $channel $points
        for {set k 0} {$k < $points} {incr k} {
            lassign [sectionPoint [chordFraction $k $points] $side] x y
            puts $channel [format "%.6e %.6e" $x $y]
        }
    }
    close $channel
}

# --- live appending ----------------------------------------------------------

proc ::case::pause {milliseconds} {
    after $milliseconds
}

# Appends one record about every 0.5 s until `seconds` have passed, now and
# then in two pieces the way a solver's buffered output reaches the disk.
proc ::case::goLive {path nextIteration seconds run} {
    set channel [open $path a]
    fconfigure $channel -translation lf -buffering full
    set stop [expr {[clock milliseconds] + round(1000.0 * $seconds)}]
    set it $nextIteration
    set written 0
    while {[clock milliseconds] < $stop} {
        set line [record $it $run]
        if {[uniform] < 0.33} {
            set cut [expr {[string length $line] / 2}]
            puts -nonewline $channel [string range $line 0 [expr {$cut - 1}]]
            flush $channel
            pause [expr {150 + int(150 * [uniform])}]
            puts $channel [string range $line $cut end]
            flush $channel
            pause 200
        } else {
            puts $channel $line
            flush $channel
            pause 500
        }
        incr it
        incr written
    }
    close $channel
    return $written
}

# --- command line ------------------------------------------------------------

proc ::case::usage {} {
    puts stderr "usage: tclsh write_case.tcl ?--out DIR? ?--records N? ?--live SECONDS? ?--restart?"
    exit 2
}

proc ::case::main {argv} {
    variable seed
    set out [file dirname [file normalize [info script]]]
    set records 300
    set live 0
    set restart 0
    while {[llength $argv] > 0} {
        set argv [lassign $argv option]
        switch -- $option {
            --out {
                if {[llength $argv] == 0} usage
                set argv [lassign $argv out]
            }
            --records {
                if {[llength $argv] == 0} usage
                set argv [lassign $argv records]
                if {![string is integer -strict $records] || $records < 1} usage
            }
            --live {
                if {[llength $argv] == 0} usage
                set argv [lassign $argv live]
                if {![string is double -strict $live] || $live < 0} usage
            }
            --restart {
                set restart 1
            }
            -h - --help {
                usage
            }
            default {
                puts stderr "unknown option $option"
                usage
            }
        }
    }

    file mkdir $out
    set history [file join $out stage.res]
    writeHistory $history $records $seed
    writeDiagram [file join $out blade.diag] 40
    writeProfile [file join $out blade.prof] 60
    puts "wrote $history ($records records), blade.diag, blade.prof in $out"
    set next [expr {$records + 1}]
    set run 0

    if {$restart} {
        # Leave the first run on disk long enough for a watcher to see it.
        pause 1000
        set run 1
        set restartRecords [expr {min(10, $records)}]
        writeHistory $history $restartRecords [expr {$seed + 1}] $run
        set next [expr {$restartRecords + 1}]
        puts "restarted $history: a new run, $restartRecords records"
    }

    if {$live > 0} {
        puts "appending to $history for $live s"
        flush stdout
        set written [goLive $history $next $live $run]
        puts "appended $written records"
    }
}

::case::main $argv
