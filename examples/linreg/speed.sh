#!/usr/bin/env bash
# Times linreg against R's lm on the same generated CSV file: ROWS rows of
# COLS predictors (y a linear function of them plus noise), each fit from the
# file, with peak resident memory from /usr/bin/time. Usage:
#   examples/linreg/speed.sh build/release/examples/linreg/linreg [ROWS] [COLS] [DIR]
# With RANKS="1 2 ..." set, it times the sweep under mpirun -np K with --mpi
# instead (wall and processor seconds of all processes), and nothing else.
set -euo pipefail
linreg=$1
rows=${2:-200000}
cols=${3:-50}
dir=${4:-/tmp}
csv=$dir/linreg_speed_${rows}x${cols}.csv
if [ ! -f "$csv" ]; then
  awk -v n="$rows" -v k="$cols" 'BEGIN {
    srand(20261124)
    for (j = 1; j <= k; j++) printf "x%d,", j
    print "y"
    for (i = 0; i < n; i++) {
      y = 1.0
      for (j = 1; j <= k; j++) { x = rand() * 10 - 5; y += x * (j % 7 - 3) / 3; printf "%.6f,", x }
      printf "%.6f\n", y + rand() - 0.5
    }
  }' > "$csv"
fi
echo "data: $csv ($(du -h "$csv" | cut -f1), $rows rows, $cols predictors)"
# Prints "seconds peak-KiB" of a command, then the command's standard error.
peak() { /usr/bin/time -f "%e %M" "$@" 2>"$dir/speed.err" >/dev/null; tail -1 "$dir/speed.err"; }
rate() { awk -v r="$rows" -v s="$1" 'BEGIN{printf "%.0f", r/s}'; }
docs=(--statxml "$dir/speed.statxml.xml" --pmml "$dir/speed.pmml")
if [ -n "${RANKS:-}" ]; then
  for k in $RANKS; do
    /usr/bin/time -f "%e %U %S" mpirun --oversubscribe -np "$k" "$linreg" "$csv" --mpi \
      --block 4096 "${docs[@]}" 2>"$dir/speed.err" >/dev/null
    read -r wall user sys <<<"$(tail -1 "$dir/speed.err")"
    echo "linreg --mpi, $k processes: $wall s wall, $(rate "$wall") rows/s," \
         "$(awk -v u="$user" -v s="$sys" 'BEGIN{printf "%.1f", u + s}') processor s"
  done
  exit 0
fi
read -r secs kb <<<"$(peak "$linreg" "$csv" --block 4096 "${docs[@]}")"
echo "linreg sweep: $secs s, $(rate "$secs") rows/s, peak RSS $((kb / 1024)) MiB"
read -r qsecs qkb <<<"$(peak "$linreg" "$csv" --block 4096 --method qr "${docs[@]}")"
echo "linreg qr:    $qsecs s, $(rate "$qsecs") rows/s, peak RSS $((qkb / 1024)) MiB"
if command -v Rscript >/dev/null; then
  # R's own clock splits reading the file from the fit.
  read -r rsecs rkb <<<"$(peak Rscript -e "t0 <- proc.time()[[3]]; d <- read.csv('$csv')
    t1 <- proc.time()[[3]]; s <- summary(lm(y ~ ., d)); t2 <- proc.time()[[3]]
    cat(sprintf('%.2f %.2f\\n', t1 - t0, t2 - t1), file = '$dir/speed.r')")"
  read -r rread rfit <"$dir/speed.r"
  echo "R: $rsecs s (read.csv $rread s, lm + summary $rfit s), peak RSS $((rkb / 1024)) MiB"
  echo "R / linreg sweep: $(awk -v a="$rsecs" -v b="$secs" 'BEGIN{printf "%.1f", a/b}')," \
       "R / linreg qr: $(awk -v a="$rsecs" -v b="$qsecs" 'BEGIN{printf "%.1f", a/b}')"
fi
