# shellcheck shell=bash
# What the proof of the UPnP plug-in is made of: checks that count, the driver that holds the plug-in, and witnesses that
# know nothing of it.

passed=0
failed=0

# part NAME TEXT: begins a part of the proof.
part() { printf '\n%s: %s\n' "$1" "$2"; }

# check TEXT COMMAND...: counts whether the command succeeds.
check() {
  local text=$1
  shift
  if "$@"; then
    passed=$((passed + 1))
    printf '  ok      %s\n' "$text"
  else
    failed=$((failed + 1))
    printf '  FAILED  %s (the last answer was: %s)\n' "$text" "${answer:-}"
  fi
}

never() { ! "$@"; }

# driver_start: makes the plug-in in a process of its own.
driver_start() {
  # The script that starts the driver names it; others read this file for its checks.
  # shellcheck disable=SC2154
  coproc driver { exec wine "$driver_program" "$lan_computer" 2>>"$network_folder/driver.log"; }
  # Copies, which subshells have too.
  exec {driver_in}>&"${driver[1]}" {driver_out}<&"${driver[0]}"
  # shellcheck disable=SC2154
  driver_process=$driver_PID
  driver_hears
  [ "$answer" = ready ] || fail "the driver doesn't start: $answer"
}

# driver_hears: takes the next line of the driver into `answer`.
driver_hears() {
  answer=
  IFS= read -r -t "${patience:-90}" answer <&"$driver_out" || answer='(no answer)'
  answer=${answer%$'\r'}
}

# tell LINE: has the driver do it; what it says is in `answer`.
tell() {
  printf '%s\n' "$1" >&"$driver_in"
  driver_hears
}

# tells LINE PATTERN: the answer to the line matches.
# shellcheck disable=SC2053
tells() {
  tell "$1"
  [[ $answer == $2 ]]
}

# driver_stop [LINE]: by "exit", or by "vanish". Not every script that reads this file passes one.
# shellcheck disable=SC2120
driver_stop() {
  [ -n "${driver_process:-}" ] || return 0
  { printf '%s\n' "${1:-exit}" >&"$driver_in"; } 2>/dev/null || true
  until_true 20 process_is_gone "$driver_process" || kill "$driver_process" 2>/dev/null || true
  wait "$driver_process" 2>/dev/null || true
  exec {driver_in}>&- {driver_out}<&-
  driver_process=
}

# fresh_driver: a plug-in that remembers nothing, with its router found.
fresh_driver() {
  driver_stop
  wine reg delete 'HKCU\Software\Harbourline UPnP Router' /f >/dev/null 2>&1 || true
  driver_start
}

# finds_router: within 15 seconds. `tell` keeps the answer, so not by until_true.
finds_router() {
  local end=$((SECONDS + 15))
  until tells 'ask Functional' True; do ((SECONDS < end)) || return 1; done
}

# within SECONDS COMMAND...: as until_true, with the driver's message loop running.
within() {
  local end=$((SECONDS + $1))
  shift
  until "$@" >/dev/null 2>&1; do
    ((SECONDS < end)) || return 1
    tell 'wait 300'
  done
}

# The milliseconds of the last answer to "want" are less than these.
took_less_than() { ((${answer##* } < $1)); }

# The daemon's own rules.
rules() { in_network router nft list chain inet filter prerouting_miniupnpd; }

# on_router PROTOCOL PORT [ADDRESS:PORT]: one of them is for this port.
on_router() {
  local protocol=0x6
  [ "$1" = TCP ] || protocol=0x11
  grep -Eq "($protocol|${1,,}) .*dport $2 dnat ip to ${3:-}" <<<"$(rules)"
}

# in_table PROTOCOL PORT: upnpc lists it.
in_table() {
  local table
  table=$(in_network lan upnpc -u "$description_url" -m "$lan_computer" -l 2>/dev/null)
  grep -Eq " $1 +$2->" <<<"$table"
}

rule_count() { rules | grep -c dnat || true; }

# reached PROTOCOL PORT: somebody on the WAN gets an answer.
reached() {
  [ "$(in_network wan python3 "$tests_upnp/listener.py" ask "${1,,}" "$public_address" "$2" 2>/dev/null)" = "here ${3:-$2}" ]
}

# scripted_has NAME TEXT: a line of the scripted router's table begins so.
scripted_has() { grep -q "^$2" "$network_folder/scripted-$1.table"; }

# serve PLACE PORT...: somebody answers there at these ports.
serve() {
  local place=$1
  shift
  nsenter --net="/proc/$(cat "$network_folder/$place.pid")/ns/net" -- \
    python3 "$tests_upnp/listener.py" serve "$@" >/dev/null 2>&1 &
  helpers+=($!)
  disown
}
helpers=()

# log_from PLACE TEXT: a syslog datagram to this computer.
log_from() { in_network "$1" bash -c 'printf %s "$1" >"/dev/udp/$2/514"' _ "$2" "$lan_computer"; }
