#!/usr/bin/env bash
# Reads the same 100,000-row ".xlsx" with the module's import (sheet_bench) and with SheetJS 0.18.5
# (readFile, then sheet_to_json with header: 1) and prints both figures and their ratios.
# Target: at least 4 times the speed at no more than half the peak memory.
# Also writes the 60,000-row ".xls" that sheet_bench reads. SheetJS is installed in a scratch
# folder ($VANTOR_SHEETJS_DIR, default $TMPDIR/vantor-sheetjs), never in the project.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
work=${VANTOR_SHEETJS_DIR:-${TMPDIR:-/tmp}/vantor-sheetjs}
bench=$build/bench/sheet_bench
[ -x "$bench" ] || { echo "build sheet_bench first (-DVANTOR_BENCH=ON; $bench)" >&2; exit 1; }

# Node.js and npm serve this comparison only, so they are installed here rather than by
# scripts/setup.
if ! command -v npm >/dev/null 2>&1; then
  sudo_cmd=""
  [ "$(id -u)" -eq 0 ] || sudo_cmd="sudo"
  $sudo_cmd apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq nodejs npm
fi

mkdir -p "$work"
if [ ! -d "$work/node_modules/xlsx" ]; then
  (cd "$work" && npm install --silent --no-audit --no-fund xlsx@0.18.5 >/dev/null)
fi
export NODE_PATH=$work/node_modules
xlsx=$work/bench-100k.xlsx
xls=$work/bench-60k.xls
[ -f "$xlsx" ] || "$bench" --make-xlsx "$xlsx"
[ -f "$xls" ] || node "$root/bench/sheetjs.js" write-xls "$xls" 60000

ours=$(VANTOR_BENCH_XLSX=$xlsx VANTOR_BENCH_XLS=$xls "$bench" --benchmark_filter='^$' 2>/dev/null | grep ' rows/s')
echo "$ours"
sheetjs=$(node "$root/bench/sheetjs.js" read "$xlsx")
node -e '
  const ours = process.argv[1], sheetjs = JSON.parse(process.argv[2]);
  const m = /^xlsx.*? in ([\d.]+) s: .*peak memory ([\d.]+) MiB/m.exec(ours);
  if (!m) { console.error("no .xlsx figures from sheet_bench"); process.exit(1); }
  const seconds = Number(m[1]), peakMiB = Number(m[2]);
  const sjPeakMiB = sheetjs.peakKiB / 1024;
  console.log(`SheetJS 0.18.5: ${sheetjs.rows} rows in ${sheetjs.seconds.toFixed(3)} s: ` +
              `${Math.round(sheetjs.rows / sheetjs.seconds)} rows/s, peak memory ${sjPeakMiB.toFixed(1)} MiB`);
  const speed = sheetjs.seconds / seconds, memory = peakMiB / sjPeakMiB;
  console.log(`speed ratio ${speed.toFixed(1)}x (target >= 4), memory ratio ${memory.toFixed(2)} (target <= 0.5): ` +
              (speed >= 4 && memory <= 0.5 ? "met" : "NOT met"));
' "$ours" "$sheetjs"
