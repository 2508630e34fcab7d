#!/usr/bin/env bash
# Runs every fuzz target for a bounded time: fuzz/run.sh BUILD_DIR SECONDS [target...]. Each target starts
# from its checked-in seeds plus what earlier runs found (kept in BUILD_DIR/corpus, never in the source
# tree). A crash leaves its input in BUILD_DIR/artifacts/<target>/; copy it into fuzz/regressions/<target>/
# once fixed, so the replay test keeps it fixed.
set -uo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${1:?build directory}"
seconds="${2:-60}"
shift 2 || true
targets=("$@")
if [[ ${#targets[@]} -eq 0 ]]; then
  targets=()
  for dir in "$root"/fuzz/corpus/*/; do targets+=("$(basename "$dir")"); done
fi

failed=()
for target in "${targets[@]}"; do
  binary="$build/fuzz_$target"
  [[ -x "$binary" ]] || { echo "fuzz: no binary $binary" >&2; failed+=("$target"); continue; }
  work="$build/corpus/$target"
  artifacts="$build/artifacts/$target"
  mkdir -p "$work" "$artifacts"
  seeds=("$root/fuzz/corpus/$target")
  [[ -d "$root/fuzz/regressions/$target" ]] && seeds+=("$root/fuzz/regressions/$target")
  echo "== fuzz_$target for ${seconds}s"
  # Leaks are reported by the sanitizer build's tests; here a slow input (over 10 s) counts as a finding.
  # Inputs may be long enough to pass the readers' depth limit by far, as the kept hostile files do.
  if ! "$binary" "$work" "${seeds[@]}" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
      -max_len=262144 -detect_leaks=0 -print_final_stats=1 -artifact_prefix="$artifacts/" \
      >"$build/fuzz_$target.log" 2>&1; then
    failed+=("$target")
    grep -E '^(==[0-9]+==ERROR|SUMMARY|artifact_prefix|Test unit written)' "$build/fuzz_$target.log" | head -n 8
  fi
  grep -E '^stat::(number_of_executed_units|new_units_added)' "$build/fuzz_$target.log" | tr '\n' ' '
  echo
done

if [[ ${#failed[@]} -gt 0 ]]; then
  echo "fuzz: findings in ${failed[*]} (logs in $build/fuzz_<target>.log)" >&2
  exit 1
fi
echo "fuzz: every target ran clean"
