# shellcheck shell=bash
# The part of the proof with routers that behave badly, and with two at once.

# bad_router TEXT OPTION...: a plug-in and a router of this kind, and no other.
bad_router() {
  local text=$1
  shift
  printf '          a router that %s\n' "$text"
  driver_stop
  scripted_stop bad KILL
  scripted_start bad "$@"
  fresh_driver
}

part_bad() {
  part bad 'routers that behave badly'
  daemon_stop
  rules_reset

  bad_router 'only takes mappings without an end' --permanent-only
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  check '... without an end' scripted_has bad "TCP 8081 $lan_computer:8081 0 "
  check '... and closed' tells 'want 2' 'done *'
  check '... for real' never scripted_has bad 'TCP 8081'

  bad_router 'fails at everything' --fail all
  check 'the failure is told' tells 'want 2 TCP:8081-8081' 'not done *'
  check '... soon' took_less_than 21000
  local action
  for action in AddPortMapping GetSpecificPortMappingEntry GetGenericPortMappingEntry GetExternalIPAddress \
    GetStatusInfo DeletePortMapping; do
    bad_router "fails at $action" --fail "$action"
    tell 'want 2 TCP:8081-8081'
    check "the answer comes soon: ${answer% *}" took_less_than 21000
    if [ "$action" = AddPortMapping ]; then check '... and tells the failure' eval '[[ $answer == "not done"* ]]'; fi
  done

  bad_router 'says yes and does nothing' --lies
  check "it isn't believed" tells 'want 2 TCP:8081-8081' 'not done *'
  check '... and the user is warned' tells warning True

  local kind
  for kind in broken none endless; do
    bad_router "has a description that is $kind" --description "$kind"
    check 'the failure is told' tells 'want 2 TCP:8081-8081' 'not done *'
    check '... soon' took_less_than 21000
  done

  bad_router 'never ends its answers' --endless-answers
  check 'the failure is told' tells 'want 2 TCP:8081-8081' 'not done *'
  check '... soon' took_less_than 21000

  bad_router 'has 10,000 mappings of others' --entries 10000
  tell 'want 2 TCP:8081-8081'
  printf '          the answer: %s\n' "$answer"
  check 'the answer comes soon' took_less_than 21000
  check 'the port is opened within a minute' within 60 scripted_has bad "TCP 8081 $lan_computer:8081"
  check 'the others are all there' eval '[ "$(grep -c other "$network_folder/scripted-bad.table")" = 10000 ]'

  bad_router 'gave the port to somebody else' --owned 8081
  check "it can't be had" tells 'want 2 TCP:8081-8081' 'not done *'
  check '... and stays with its owner' scripted_has bad "TCP 8081 $lan_neighbour"

  bad_router 'forbids low ports' --refuse-below 1024
  check "they can't be had" tells 'want 2 TCP:80-80' 'not done *'

  bad_router 'forbids a port in the middle of a range' --owned 8105
  check "the range can't be had" tells 'want 2 TCP:8100-8110' 'not done *'
  check '... and no half of it stays' eval '[ "$(grep -c "$lan_computer" "$network_folder/scripted-bad.table")" = 0 ]'

  bad_router 'answers after ten seconds' --delay 10
  tell 'want 2 TCP:8081-8081'
  check 'the interface waits 20 s at most' took_less_than 21000
  local from=$EPOCHREALTIME
  tell 'ask WANIP'
  tell warning
  check 'what the program asks all the time is answered at once' awk "BEGIN { exit !($EPOCHREALTIME - $from < 0.5) }"
  driver_stop vanish

  bad_router 'is restarted'
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  kill -USR1 "$(cat "$network_folder/scripted-bad.pid")"
  check 'it comes back within a minute' within 60 scripted_has bad 'TCP 8081'

  driver_stop
  in_network router ip address add 192.168.77.254/24 dev br-lan
  printf '          two routers at once, of which one is behind another router\n'
  scripted_stop bad
  scripted_start bad --wan-address 10.0.0.9
  scripted_start good --address 192.168.77.254 --uuid 3c0a7a54-3f43-4f0e-9f0e-2f6c2ab1d9c1 --version 2
  fresh_driver
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  check '... on the better one' scripted_has good 'TCP 8081'
  check '... and not on the other' never scripted_has bad 'TCP 8081'
  driver_stop
  scripted_stop bad
  scripted_stop good
  in_network router ip address del 192.168.77.254/24 dev br-lan
  daemon_start
}
