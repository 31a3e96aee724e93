# shellcheck shell=bash
# The part of the proof with the habits of real routers: one function habit_NAME a habit, in habits/*.sh. Each makes a
# router that has it (habits/*.py tells the router how), and looks at the router's table and at what is told.
#
# HARBOURLINE_HABITS names those that are wanted, as "end_tags floods"; otherwise all of them run.

for file in "$tests_upnp"/habits/*.sh; do
  # shellcheck source=/dev/null
  source "$file"
done

# habit TEXT OPTION...: a plug-in that remembers nothing, and one router, called habit, with these options of
# scripted_router.py.
habit() {
  printf '          a router that %s\n' "$1"
  shift
  driver_stop vanish
  scripted_stop habit KILL
  scripted_start habit "$@"
  fresh_driver
}

# router_has TEXT: a line of that router's table begins so.
router_has() { scripted_has habit "$1"; }

# router_journal PATTERN: how many lines of that router's journal match.
router_journal() { grep -Ec "$1" "$network_folder/scripted-habit.journal" 2>/dev/null || true; }

# router_restarts: the router loses its table and announces itself.
router_restarts() { kill -USR1 "$(cat "$network_folder/scripted-habit.pid")"; }

# ends_within SECONDS: the farewell and the end of the process take at most so long.
ends_within() {
  local from=$EPOCHREALTIME
  driver_stop
  awk "BEGIN { exit !($EPOCHREALTIME - $from < $1) }"
}

# stays SECONDS COMMAND...: it is so all the time.
stays() {
  local end=$((SECONDS + $1))
  shift
  while ((SECONDS < end)); do
    "$@" || return 1
    tell 'wait 300'
  done
}

part_habits() {
  part habits 'the habits of real routers'
  daemon_stop
  rules_reset
  local wanted_habits name from
  read -ra wanted_habits <<<"${HARBOURLINE_HABITS:-$(compgen -A function habit_ | sed 's/^habit_//' | tr '\n' ' ')}"
  for name in "${wanted_habits[@]}"; do
    from=$SECONDS
    "habit_$name"
    printf '          %s: %s s\n' "$name" $((SECONDS - from))
  done
  driver_stop vanish
  scripted_stop habit KILL
  daemon_start
}
