#!/usr/bin/env bash
# The program at collection scale, in one command: writes reproducible collections of 10,000 and
# 100,000 files (about 100,000 and 1,000,000 entries; --quick: the small one only) and a GameBase
# of 30,000 games, runs the benchmarks over them, each beside its plain baseline in the same
# run, and collects their figures into one Markdown table with the machine and its load.
#
#   bench/scale.sh [--quick] [--build DIR] [--data DIR] [--rounds R] [--import-rounds R]
#                  [--sizes "10000 100000"]
#
# --build: the build folder holding bench/ (default: build). --data: where the collections,
# catalogues and the report go (default: $VD_BENCH_DATA, else $TMPDIR/vellumdock-scale); kept
# between runs, so that a collection is written once for its size and seed.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build="$root/build"
data="${VD_BENCH_DATA:-${TMPDIR:-/tmp}/vellumdock-scale}"
rounds=3
import_rounds=1
sizes="10000 100000"
while [ $# -gt 0 ]; do
    case "$1" in
    --quick) sizes="10000"; rounds=1 ;;
    --build) build=$(cd "$2" && pwd); shift ;;
    --data) data="$2"; shift ;;
    --rounds) rounds="$2"; shift ;;
    --import-rounds) import_rounds="$2"; shift ;;
    --sizes) sizes="$2"; shift ;;
    -h | --help) sed -n '2,12p' "$0"; exit 0 ;;
    *) echo "unknown option: $1" >&2; exit 2 ;;
    esac
    shift
done

bin="$build/bench"
for tool in vellumdock-bench-import vellumdock-bench-browser vellumdock-bench-start \
    vellumdock-bench-gbwindow; do
    if [ ! -x "$bin/$tool" ]; then
        echo "$bin/$tool is missing: build the benchmarks first (ninja -C $build $tool)" >&2
        exit 1
    fi
done
mkdir -p "$data"
export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"

stamp=$(date -u +%Y%m%d-%H%M%S)
log="$data/scale-$stamp.log"
report="$data/scale-$stamp.md"
rows="$data/scale-$stamp.rows"
: >"$rows"

load() { cut -d' ' -f1-3 /proc/loadavg; }

# Runs one benchmark, keeps its whole output in the log and its TABLE lines, tagged with the
# size and the load before and after, in the rows.
run() {
    local size="$1"
    shift
    local before after
    before=$(load)
    echo "== $size: $*" | tee -a "$log"
    "$@" 2>&1 | tee -a "$log" | grep '^TABLE|' | sed "s/^TABLE|/$size|/" >"$rows.part" || true
    after=$(load)
    sed "s/\$/|$before to $after/" "$rows.part" >>"$rows"
    rm -f "$rows.part"
}

for n in $sizes; do
    dir="$data/scale-$n"
    mkdir -p "$dir/browser"
    run "$n files" "$bin/vellumdock-bench-import" --dir "$dir" --files "$n" \
        --rounds "$import_rounds" --keep "$dir/imported.vdb"
    run "$n files" "$bin/vellumdock-bench-browser" --catalogue "$dir/imported.vdb" \
        --dir "$dir/browser" --rounds "$rounds" --nodes 20 --search AB \
        --search-file "Game 47" --search-path "/Q/Game 1"
    run "$n files" "$bin/vellumdock-bench-start" --catalogue "$dir/imported.vdb" --starts 50 \
        --dir "$dir"
done
mkdir -p "$data/gamebase"
run "30,000 games" "$bin/vellumdock-bench-gbwindow" --games 30000 --rounds "$rounds" \
    --dir "$data/gamebase"

{
    echo "# Vellumdock at collection scale, $(date -u '+%Y-%m-%d %H:%M') UTC"
    echo
    echo "Machine: $(lscpu | sed -n 's/^Model name: *//p' | head -1), $(nproc) cores," \
        "$(free -g | awk '/^Mem:/ {print $2}') GiB RAM; load average at the end: $(load)."
    echo "Build: $build. Each figure beside its plain baseline from the same run; the last"
    echo "column is the load average (1, 5, 15 minutes) before and after the benchmark."
    echo
    echo "| Collection | Measurement | ours | baseline | target | result | load |"
    echo "|---|---|---|---|---|---|---|"
    sed 's/^/| /; s/$/ |/' "$rows"
} >"$report"
cat "$report"
echo
echo "report: $report, whole output: $log"
