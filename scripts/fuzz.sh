#!/bin/sh
# Runs the three fuzzers side by side: fuzz.sh SECONDS [FOLDER]
# Seeds: built EDIDs and the folder of REEDID_CORPUS when that is set. What they reach stays in FOLDER (build/fuzz/work) and
# is the start of the next run; inputs that fail are kept there too, as crash-*, leak-*, oom-* and timeout-*.
set -eu
cd "$(dirname "$0")/.."
seconds=${1:?usage: fuzz.sh SECONDS [FOLDER]}
work=${2:-build/fuzz/work}
scripts/install-deps.sh clang
cmake --preset asan >/dev/null
cmake --build --preset asan --target fuzz_seeds fuzz_image fuzz_codec fuzz_edits
bin=$PWD/build/asan/fuzz
"$bin/fuzz_seeds" "$work/seeds"

run() { # NAME; leaves the processor time that it took in NAME.times
  mkdir -p "$work/$1"
  result=0
  "$bin/fuzz_$1" -max_total_time="$seconds" -max_len=1024 -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$work/" "$work/$1" "$work/seeds/$1" ${REEDID_CORPUS:+"$REEDID_CORPUS"} >"$work/$1.log" 2>&1 ||
    result=$?
  times >"$work/$1.times"
  return $result
}

pids=""
for name in image codec edits; do
  run "$name" &
  pids="$pids $!:$name"
done
status=0
for entry in $pids; do
  name=${entry#*:}
  if wait "${entry%%:*}"; then result=passed; else result=FAILED; status=1; fi
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/$name.log")
  covered=$(grep -o ' ft: [0-9]*' "$work/$name.log" | tail -1)
  used=$(sed -n '2s/ .*//p' "$work/$name.times")
  echo "$name: $result, ${executions:-?} executions in $used of processor time,${covered:- no} features; log $work/$name.log"
done
exit $status
