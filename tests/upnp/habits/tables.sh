# shellcheck shell=bash
# The habits of routers with their tables, leases and connections.

# leased SECONDS TEXT OPTION...: as habit, with a plug-in that asks for leases of so many seconds.
leased() {
  printf '          a router that %s\n' "$2"
  local seconds=$1
  shift 2
  driver_stop vanish
  scripted_stop habit KILL
  scripted_start habit "$@"
  wine reg delete 'HKCU\Software\Harbourline UPnP Router' /f >/dev/null 2>&1 || true
  wine reg add 'HKCU\Software\Harbourline UPnP Router' /v Lease /t REG_DWORD /d "$seconds" /f >/dev/null
  driver_start
}

# opens_and_closes: a port is opened, stays open beyond a lease of 20 s, and is closed again.
opens_and_closes() {
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  check '... for real' router_has "TCP 8081 $lan_computer:8081"
  check '... and stays open beyond its lease' stays 30 router_has "TCP 8081 $lan_computer:8081"
  check '... and nothing else is said' tells features 'All is well*'
  check 'it is wanted no longer' tells 'want 2' 'done *'
  check '... and is closed' never router_has 'TCP 8081'
}

# opens_and_leaves: as that without a lease.
opens_and_leaves() {
  check 'two ports are opened' tells 'want 2 TCP:8081-8081 UDP:8082-8082' 'done *'
  check '... for real' eval 'router_has "TCP 8081" && router_has "UDP 8082"'
  check 'the same is wanted again' tells 'want 2 TCP:8081-8081 UDP:8082-8082' 'done *'
  check 'one is wanted no longer' tells 'want 2 TCP:8081-8081' 'done *'
  check '... and is closed' eval 'router_has "TCP 8081" && never router_has "UDP 8082"'
  check 'at the farewell the other one goes' eval 'driver_stop; never router_has "TCP 8081"'
}

habit_empty_tables() {
  local code
  for code in 402 501; do
    leased 20 "says $code for an empty table and for a missing entry" --habit "empty-$code"
    opens_and_closes
  done
}

habit_unreadable_tables() {
  local code
  for code in 401 402 501; do
    leased 20 "tells no entry at all, but $code" --fail "GetGenericPortMappingEntry=$code" \
      --fail "GetSpecificPortMappingEntry=$code"
    opens_and_closes
  done
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  router_restarts
  check 'after a restart it comes back' within 20 router_has 'TCP 8081'
}

habit_anybody() {
  local word
  for word in zeros star; do
    habit "writes 'anybody' as $word" --habit "anybody-$word"
    opens_and_leaves
  done
}

habit_words() {
  local name
  for name in lower-case says-true says-yes blanks; do
    habit "has the words of its entries so: $name" --habit "$name"
    opens_and_leaves
  done
}

habit_finite_leases() {
  local name
  for name in finite-402 finite-501 finite-911 keeps-permanent-only; do
    habit "doesn't take leases that end: $name" --habit "$name"
    opens_and_leaves
  done
}

habit_refused_renewals() {
  habit 'refuses every renewal' --habit adds-once --longest-lease 20
  opens_and_closes
}

habit_told_leases() {
  leased 20 'tells every lease as 0' --habit tells-no-lease
  opens_and_closes
}

habit_descriptions() {
  local name
  for name in cuts-descriptions own-descriptions; do
    habit "has descriptions of its own: $name" --habit "$name" --longest-lease 20
    opens_and_closes
  done
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  driver_stop vanish
  driver_start
  check 'after a crash nothing is wanted' eval 'finds_router && tells "want 2" "done *"'
  check '... and the port is closed' never router_has 'TCP 8081'
}

habit_restart() {
  habit 'shows its old table after a restart' --habit keeps-table
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  local before
  before=$(router_journal 'AddPortMapping 8081 done')
  router_restarts
  check 'it is added anew all the same' within 20 eval '(($(router_journal "AddPortMapping 8081 done") > before))'
}

habit_lacking_actions() {
  local name
  for name in resets-at-entry resets-at-table resets-at-status; do
    leased 20 "cuts the connection: $name" --habit "$name"
    opens_and_closes
  done
}

habit_one_connection() {
  habit 'serves one connection at a time' --habit one-connection
  check 'forty ports are opened' tells 'want 2 TCP:8100-8139' 'done *'
  check '... for real' eval '[ "$(grep -c "$lan_computer" "$network_folder/scripted-habit.table")" = 40 ]'
  check 'at the farewell they go' eval 'driver_stop; [ ! -s "$network_folder/scripted-habit.table" ]'
}

habit_placeholders() {
  habit 'has a placeholder for every port' --habit placeholders --fail GetGenericPortMappingEntry=401
  opens_and_leaves
}

habit_port_ranges() {
  habit 'has a range of ports in one entry' --habit port-ranges
  check 'a port of the range is told as taken' tells 'want 2 TCP:8050-8050' 'not done *'
  check 'another one is opened' tells 'want 2 TCP:8101-8101' 'done *'
  check 'the range is still there' router_has 'TCP 8000-8100 192.168.77.9'
}

habit_farewell() {
  habit 'keeps mappings for ever and takes 50 ms for each call' --permanent-only --delay 0.05
  check '75 ports are opened' tells 'want 2 TCP:8100-8174' 'done *'
  check 'the end takes at most ten seconds' ends_within 10
  check '... and leaves none' eval '[ ! -s "$network_folder/scripted-habit.table" ]'
  habit 'keeps mappings for ever and takes 300 ms for each call' --permanent-only --delay 0.3
  tell 'want 2 TCP:8100-8174'
  check '75 ports are opened' within 150 eval '[ "$(grep -c . "$network_folder/scripted-habit.table")" = 75 ]'
  check 'the end takes at most ten seconds' ends_within 10
  check '... and leaves some' test -s "$network_folder/scripted-habit.table"
  driver_start
  check 'the router is found at the next start' finds_router
  check '... which takes them off' within 60 eval '[ ! -s "$network_folder/scripted-habit.table" ]'
}

habit_calm_watch() {
  habit 'has a hundred ports of ours'
  check 'they are opened' tells 'want 2 TCP:8100-8199' 'done *'
  local before
  before=$(router_journal 'Get(Specific|Generic)PortMappingEntry')
  tell 'wait 62000'
  check 'two checks ask for twenty of them at most' \
    eval '(($(router_journal "Get(Specific|Generic)PortMappingEntry") - before <= 20))'
}
