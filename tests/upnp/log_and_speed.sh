# shellcheck shell=bash
# The parts of the proof about the router's log, and about time.

part_log() {
  part log "the router's log"
  local line='<4>kernel: DROP IN=wan0 OUT= SRC=203.0.113.99 DST=44.128.0.1 LEN=60 PROTO=TCP SPT=4000 DPT='
  fresh_driver
  check 'the router is found' finds_router
  check 'the log is switched on' tells 'log on' 'done'
  within 5 eval 'log_from router "${line}9001"; tell "wait 200"; tell rows; [[ $answer == *9001* ]]' || true
  check "a line of the router's makes a row" eval \
    '[[ $answer == *"Log in 203.0.113.99 4000 44.128.0.1 9001 named"* ]]'
  log_from neighbour "${line}9002"
  log_from router "${line}9003"
  tell 'wait 500'
  check "a neighbour's line makes none" tells rows '*9003*'
  check '... none at all' eval '[[ $answer != *9002* ]]'
  log_from router "${line}9004"
  log_from router "${line}9004"
  tell 'wait 500'
  tell rows
  check 'a repeat makes none' eval '[[ $answer == *9004* && $answer != *9004*9004* ]]'
  tell 'filter 9005'
  log_from router "${line}9005"
  tell 'wait 500'
  check "what the user doesn't want to see makes none" tells rows ''
  in_network router python3 - "$lan_computer" <<'END'
import os, socket, sys
sender = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
target = (sys.argv[1], 514)
for size in (1, 100, 9000, 65000):
    sender.sendto(os.urandom(size), target)
    sender.sendto(bytes(size), target)
    sender.sendto(b"SRC=" * (size // 4), target)
END
  tell 'wait 500'
  check 'junk of any length makes none' tells rows ''
  in_network router python3 - "$lan_computer" "$line" <<'END' &
import socket, sys
sender = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
for number in range(1_000_000):
    sender.sendto(f"{sys.argv[2]}{number % 60000 + 1}".encode(), (sys.argv[1], 514))
END
  local burst=$! from=$EPOCHREALTIME rows=0 slowest=0
  while kill -0 "$burst" 2>/dev/null; do
    local start=$EPOCHREALTIME
    tell 'ask WANIP'
    slowest=$(awk "BEGIN { t = $EPOCHREALTIME - $start; print (t > $slowest ? t : $slowest) }")
    tell 'wait 200'
  done
  tell 'wait 2500'
  tell rows
  rows=$(grep -o 'Log in' <<<"$answer" | wc -l)
  local seconds
  seconds=$(awk "BEGIN { print int($EPOCHREALTIME - $from) + 1 }")
  printf '          a million lines in a burst: %s rows in %s s, an answer after %s s at most\n' "$rows" "$seconds" "$slowest"
  check 'a million lines make 50 rows a second at most' eval '((rows > 0 && rows <= 50 * seconds))'
  check '... and a row tells how many were left out' eval '[[ $answer == *"came too fast and were left out"* ]]'
  check '... and the plug-in answers meanwhile' awk "BEGIN { exit !($slowest < 1) }"
  check 'the log is switched off' tells 'log off' 'done'
  log_from router "${line}9006"
  tell 'wait 500'
  check '... and nothing comes any more' eval 'tell rows; [[ $answer != *9006* ]]'

  nsenter --net="/proc/$(cat "$network_folder/lan.pid")/ns/net" -- python3 -c '
import socket, time
taken = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
taken.bind(("0.0.0.0", 514))
time.sleep(600)' &
  helpers+=($!)
  disown
  sleep 1
  check 'a port that somebody has is told' tells 'log on' 'not done'
  check '... by an Error event' tells rows '*Error *another program uses the port*'
  kill "${helpers[-1]}"
  check 'the log is switched off again' tells 'log off' 'done'
}

# medians of milliseconds, one a line
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

part_speed() {
  part speed 'the time of a mapping, beside what others need in the same run'
  fresh_driver
  check 'the router is found' finds_router
  local i ours theirs bare start
  ours=$(for i in {1..11}; do
    tell "want 2 TCP:$((30000 + i))-$((30000 + i))" && echo "${answer##* }"
    tell 'want 2'
  done | median)
  theirs=$(for i in {1..11}; do
    start=$EPOCHREALTIME
    upnpc -u "$description_url" -m "$lan_computer" -a "$lan_computer" 31000 $((31000 + i)) TCP 3600 >/dev/null
    awk "BEGIN { print ($EPOCHREALTIME - $start) * 1000 }"
  done | median)
  printf '          one mapping: %s ms; upnpc: %s ms\n' "$ours" "$theirs"
  # Windows tells the time in steps of 16 ms.
  check 'one mapping within 1.5 times of upnpc' awk "BEGIN { exit !($ours <= 1.5 * $theirs + 16) }"
  local list='' mine=() others=()
  for i in {1..100}; do list+=" TCP:$((32000 + i))-$((32000 + i))"; done
  for i in 1 2 3; do
    tell "want 2$list"
    [[ $answer == done* ]] && mine+=("${answer##* }")
    tell 'want 2'
    others+=("$(in_network lan python3 "$tests_upnp/bare_additions.py" "$lan_router" 5000 "$lan_computer" 33000 100)")
  done
  check 'a hundred mappings are made' eval '((${#mine[@]} == 3))'
  ours=$(printf '%s\n' "${mine[@]}" | median)
  bare=$(printf '%s\n' "${others[@]}" | median)
  printf '          a hundred mappings: %s ms; a hundred bare additions: %s ms\n' "$ours" "$bare"
  check 'a hundred mappings within 1.2 times of bare additions' awk "BEGIN { exit !($ours <= 1.2 * $bare + 16) }"

  driver_stop
  daemon_stop
  rules_reset
  scripted_start calm
  fresh_driver
  tell 'want 2 TCP:8081-8081 TCP:8082-8082'
  # A check of its own must not fall into what is counted.
  tell 'wait 1000'
  local journal=$network_folder/scripted-calm.journal before
  before=$(wc -l <"$journal")
  check 'the same is wanted again' tells 'want 2 TCP:8081-8081 TCP:8082-8082' 'done *'
  tail -n "+$((before + 1))" "$journal" | cut -d ' ' -f 2- >"$network_folder/again.txt"
  check '... which changes nothing' never grep -Eq 'AddPortMapping|DeletePortMapping' "$network_folder/again.txt"
  check '... and reads the table once at most' eval \
    '[ "$(grep -c "GetGenericPortMappingEntry.*713" "$network_folder/again.txt" || true)" -le 1 ]'
  driver_stop
  scripted_stop calm
  daemon_start
}
