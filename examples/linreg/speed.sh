#!/usr/bin/env bash
# Times linreg against R's lm on the same generated CSV file: ROWS rows of
# COLS predictors (y a linear function of them plus noise), each fit from the
# file, with peak resident memory from /usr/bin/time. Usage:
#   examples/linreg/speed.sh build/release/examples/linreg/linreg [ROWS] [COLS] [DIR]
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
peak() { /usr/bin/time -f "%e %M" "$@" 2>&1 >/dev/null | tail -1; }
read -r secs kb <<<"$(peak "$linreg" "$csv" --block 4096 --statxml "$dir/speed.statxml.xml" --pmml "$dir/speed.pmml")"
echo "linreg sweep: $secs s, $(awk -v r="$rows" -v s="$secs" 'BEGIN{printf "%.0f", r/s}') rows/s, peak RSS $((kb / 1024)) MiB"
read -r qsecs qkb <<<"$(peak "$linreg" "$csv" --block 4096 --method qr --statxml "$dir/speed.statxml.xml" --pmml "$dir/speed.pmml")"
echo "linreg qr:    $qsecs s, $(awk -v r="$rows" -v s="$qsecs" 'BEGIN{printf "%.0f", r/s}') rows/s, peak RSS $((qkb / 1024)) MiB"
if command -v Rscript >/dev/null; then
  read -r rsecs rkb <<<"$(peak Rscript -e "d <- read.csv('$csv'); f <- lm(y ~ ., d); invisible(summary(f))")"
  echo "R read.csv + lm: $rsecs s, peak RSS $((rkb / 1024)) MiB"
  echo "ratio R / linreg sweep: $(awk -v a="$rsecs" -v b="$secs" 'BEGIN{printf "%.2f", a/b}')"
fi
