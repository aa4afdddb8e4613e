#!/bin/bash
# Whole-process timing and peak memory of plotvane-render against matplotlib
# on the same CSV files: one curve and a folded eye of 10^6 and 10^7
# samples, plus a 1,000-sample curve for the fixed cost of the GL stack.
# Runs of the two programs alternate, so that load from elsewhere on the
# machine falls on both alike; the medians and the ratio are printed.
#
# usage: tests/bench/whole_process.sh [PLOTVANE_RENDER]
#   RUNS=5            runs of each program per case
#   CASES="..."       subset of: curve-1e3 curve-1e6 eye-1e6 curve-1e7 eye-1e7
#   BENCH_DIR=DIR     where the data and pictures go (kept between runs)
#   NO_MPL=1          skip matplotlib even when it is installed
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
render=${1:-$here/../../build/apps/plotvane-render}
runs=${RUNS:-5}
cases=${CASES:-curve-1e3 curve-1e6 eye-1e6 curve-1e7 eye-1e7}
dir=${BENCH_DIR:-${TMPDIR:-/tmp}/plotvane-bench}
mkdir -p "$dir"

[ -x "$render" ] || { echo "no plotvane-render at $render" >&2; exit 1; }
[ -x /usr/bin/time ] || { echo "needs /usr/bin/time (Debian package 'time')" >&2; exit 1; }
# Debian's python3-matplotlib lives with Debian's interpreter, which need not
# be the first python3 on the PATH.
mpl=0
if [ -z "${NO_MPL:-}" ]; then
    for py in python3 /usr/bin/python3; do
        if "$py" -c 'import matplotlib, numpy' 2>/dev/null; then
            mpl=1
            break
        fi
    done
fi

samples() {
    case $1 in
    *-1e3) echo 1000 ;; *-1e6) echo 1000000 ;; *-1e7) echo 10000000 ;;
    *) echo "unknown case $1" >&2; exit 1 ;;
    esac
}

# One timed run: prints "seconds peak-kB cpu-seconds".
timed() {
    /usr/bin/time -f '%e %M %U %S' -o "$dir/time.out" "$@" >/dev/null 2>"$dir/err.out" ||
        { cat "$dir/err.out" >&2; exit 1; }
    awk '{print $1, $2, $3 + $4}' "$dir/time.out"
}

median() { sort -g | awk '{v[NR]=$1} END {print (NR%2) ? v[(NR+1)/2] : (v[NR/2]+v[NR/2+1])/2}'; }

# cpu is plotvane-render's user+system time: steadier than wall time on a
# busy machine, though it counts the renderer's worker threads too.
# Bytes per sample count the peak over that of the 1,000-sample case, which
# is the GL stack's own.
printf '%-10s %10s %8s %10s %8s %8s %12s\n' case plotvane cpu matplotlib ratio peak-MB bytes/sample
base_kb=
for c in $cases; do
    n=$(samples "$c")
    csv=$dir/$c.csv
    [ -s "$csv" ] || python3 "$here/make_bench_data.py" "${c%%-*}" "$n" "$csv"
    : >"$dir/pv.t"; : >"$dir/mpl.t"
    for ((r = 0; r < runs; r++)); do
        timed "$render" --size 1600x1000 -o "$dir/$c.pv.png" "$csv" >>"$dir/pv.t"
        if [ $mpl = 1 ] && [ "$n" -le 1000000 ]; then
            timed "$py" "$here/mpl_chart.py" "$csv" "$dir/$c.mpl.png" >>"$dir/mpl.t"
        fi
    done
    pv=$(cut -d' ' -f1 "$dir/pv.t" | median)
    kb=$(cut -d' ' -f2 "$dir/pv.t" | median)
    cpu=$(cut -d' ' -f3 "$dir/pv.t" | median)
    if [ -s "$dir/mpl.t" ]; then
        mp=$(cut -d' ' -f1 "$dir/mpl.t" | median)
        ratio=$(awk -v a="$mp" -v b="$pv" 'BEGIN {printf "%.1fx", a / b}')
    else
        mp=-; ratio=-
    fi
    [ "$mp" = - ] || mp=${mp}s
    printf '%-10s %9ss %7ss %10s %8s %8.0f %12s\n' "$c" "$pv" "$cpu" "$mp" "$ratio" \
        "$(awk -v k="$kb" 'BEGIN {print k / 1024}')" \
        "$(awk -v k="$kb" -v b="$base_kb" -v n="$n" \
            'BEGIN {if (b == "" || n <= 1000) print "-"; else printf "%.1f", (k - b) * 1024 / n}')"
    [ "$c" != curve-1e3 ] || base_kb=$kb
done
