# shellcheck shell=bash
# The steps of ./test: each is timed, logged, counted, and told in one line.

passed=0
failed=0
declare -A step_result=()
step_lines=()

# record KEY TITLE SECONDS PASSED FAILED REMARK: takes a step into the summary and tells it.
record() {
  local key=$1 title=$2 seconds=$3 remark=$6 word=ok
  passed=$((passed + $4))
  failed=$((failed + $5))
  if (($5)); then word=FAILED; fi
  step_result[$key]=$word
  step_lines+=("$(printf '%-6s %7.1f s  %-48s %s' "$word" "$seconds" "$title" "$remark")")
  printf '%s\n' "${step_lines[-1]}"
  [ "$word" = ok ]
}

# run_logged KEY COMMAND...: the command with its output in the step's log; sets `status` and `seconds`.
run_logged() {
  local log=build/logs/$1.log from=$EPOCHREALTIME
  shift
  status=0
  if [ -n "${show_output:-}" ]; then
    "$@" </dev/null 2>&1 | tee "$log" || status=$?
  else
    "$@" </dev/null >"$log" 2>&1 || status=$?
  fi
  seconds=$(awk -v from="$from" -v to="$EPOCHREALTIME" 'BEGIN { print to - from }')
}

# step KEY TITLE COMMAND...: succeeds when the command does.
step() {
  local key=$1 title=$2 status seconds
  shift 2
  run_logged "$key" "$@"
  if ((status == 0)); then
    record "$key" "$title" "$seconds" 1 0 ''
  else
    tail -n 60 "build/logs/$key.log"
    record "$key" "$title" "$seconds" 0 1 "exit code $status, build/logs/$key.log"
  fi
}

# tests KEY TITLE PROGRAM [RUNNER]: the program is one of GoogleTest, and RUNNER what runs it. It runs in its own folder.
# Its report counts, not its exit code alone: a program that ends before it has written one has failed.
# The caller's variable `around` may name a command that runs all of it.
tests() {
  local key=$1 title=$2 program=$3 runner=${4:-} status seconds run=0 bad=0 report=build/logs/$1.xml where
  where=$PWD/$report
  [ "$runner" != wine ] || where=$(wine_path "$where")
  rm -f "$report"
  run_logged "$key" ${around:+"$around"} env -C "$(dirname "$program")" timeout --kill-after=10 1200 ${runner:+"$runner"} \
    "./$(basename "$program")" "--gtest_output=xml:$where" "--gtest_filter=${filter:-*}"
  local remark
  if [ -s "$report" ]; then
    run=$(attribute tests "$report")
    bad=$(($(attribute failures "$report") + $(attribute errors "$report")))
    remark="$run tests"
    if ((bad)); then remark="$remark, $bad failed"; fi
  else
    remark="wrote no report"
  fi
  if ((bad == 0)); then
    # Not one test is to blame, but the program is: it counts as one.
    if ((status != 0)) || [ ! -s "$report" ]; then
      bad=1 remark="$remark, exit code $status"
    elif ((run == 0)); then
      bad=1 remark='ran no test'
    fi
    run=$((run + bad))
  fi
  if ((bad)); then
    show_failures "build/logs/$key.log"
    remark="$remark, build/logs/$key.log"
  fi
  record "$key" "$title" "$seconds" $((run - bad)) "$bad" "$remark"
}

# A number in the first line of a GoogleTest report.
attribute() { sed -n "/<testsuites/{s/.* $1=\"\([0-9]*\)\".*/\1/p;q}" "$2"; }

# The output of the tests that failed; the end of the log when none is named there.
show_failures() {
  awk '
    /^\[ RUN      \]/ { held = "" }
    { held = held $0 "\n" }
    /^\[  FAILED  \] .*\)\r?$/ { printf "%s", held; shown = 1; held = "" }
    END { if (!shown) exit 1 }
  ' "$1" || tail -n 30 "$1"
}

# not_run KEY TITLE WHY: what could not even start has not passed.
not_run() { record "$1" "$2" 0 0 1 "not run: $3"; }

summary() {
  echo
  echo "Summary, $SECONDS s in all:"
  printf '%s\n' "${step_lines[@]}"
  echo
  echo "$passed passed, $failed failed"
}
