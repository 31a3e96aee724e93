# shellcheck shell=bash
# The habits of routers in the search, and of hostile or broken neighbours.

other_router=192.168.77.254
other_uuid=3c0a7a54-3f43-4f0e-9f0e-2f6c2ab1d9c1

# other_start OPTION...: a second router beside the one that has the habit, at another address.
other_start() {
  in_network router ip address add "$other_router/24" dev br-lan 2>/dev/null || true
  scripted_start other --address "$other_router" --uuid "$other_uuid" --name 'Other Router' --model Other "$@"
}

other_stop() {
  scripted_stop other KILL
  in_network router ip address del "$other_router/24" dev br-lan 2>/dev/null || true
}

# searches_of_other: how often everybody was searched for, as the second router heard it: each search calls four types.
searches_of_other() {
  cat "$network_folder/scripted-other.journal" 2>/dev/null | grep -c 'search .*WANIPConnection' || true
}

# known_mappings: the length of the stored list of our own mappings.
known_mappings() {
  wine reg query 'HKCU\Software\Harbourline UPnP Router' /v Mappings 2>/dev/null | tr -d '\r\n' | wc -c
}

habit_slow_search() {
  habit 'answers a search as late as it may' --habit slow-search
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  check '... on it' router_has "TCP 8081 $lan_computer:8081"
  check 'at the farewell it goes' eval 'driver_stop; never router_has "TCP 8081"'
}

habit_slow_default_gateway() {
  driver_stop vanish
  scripted_stop habit KILL
  other_start
  habit 'is the gateway of the default route, and answers later than another one' --habit slow-search
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  check '... on the gateway of the default route' router_has "TCP 8081 $lan_computer:8081"
  check '... and not on the quicker one' never scripted_has other 'TCP 8081'
  driver_stop
  other_stop
}

habit_silent_for_a_while() {
  driver_stop vanish
  scripted_stop habit KILL
  other_start
  habit 'is silent for forty seconds while another one answers'
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  local router
  router=$(cat "$network_folder/scripted-habit.pid")
  kill -STOP "$router"
  check 'the other one gets nothing' stays 40 never scripted_has other 'TCP 8081'
  kill -CONT "$router"
  check 'it is used again within a minute' within 60 tells features 'All is well*'
  check '... with its port' router_has "TCP 8081 $lan_computer:8081"
  check '... and the other one has none' never scripted_has other 'TCP 8081'
  driver_stop
  other_stop
}

habit_host_name() {
  habit 'names itself by a host name' --habit host-name
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  check '... on it' router_has "TCP 8081 $lan_computer:8081"
  check 'at the farewell it goes' eval 'driver_stop; never router_has "TCP 8081"'
}

habit_other_address() {
  habit 'names itself by another address' --habit other-address
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  check '... on it' router_has "TCP 8081 $lan_computer:8081"
  check 'at the farewell it goes' eval 'driver_stop; never router_has "TCP 8081"'
}

habit_new_identifier() {
  local times before after
  habit 'has another identifier after each restart' --habit new-identifier
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  before=$(known_mappings)
  for times in 1 2; do
    router_restarts
    check "restart $times: the port comes back within a minute" within 60 router_has 'TCP 8081'
    driver_stop vanish
    driver_start
    check '... and the next start opens it without a question' tells 'want 2 TCP:8081-8081' 'done *'
  done
  after=$(known_mappings)
  check "our own list hasn't grown ($before, $after)" eval "[ $before = $after ]"
  check 'at the farewell it goes' eval 'driver_stop; never router_has "TCP 8081"'
}

# told_and_ended TEXT OPTION...: nothing can be opened there; that is told, and the end doesn't wait.
told_and_ended() {
  habit "$@"
  check 'the failure is told' tells 'want 2 TCP:8081-8081' 'not done *'
  check '... within 12 s' took_less_than 12000
  check 'the end takes at most ten seconds' ends_within 10
}

habit_end_tags() {
  told_and_ended 'has a description of begun elements and a quarter of a million begun ends' --habit end-tags
}
habit_huge_length() { told_and_ended 'promises four gigabytes of description' --habit huge-length; }
habit_drips() { told_and_ended 'sends its description byte by byte' --habit drips; }
habit_endless() { told_and_ended 'has a description without an end' --description endless; }

habit_many_services() {
  habit 'offers sixteen connections, each of which takes four seconds for an answer' --habit many-services
  tell 'want 2 TCP:8081-8081'
  check "the answer comes within 21 s: $answer" took_less_than 21000
  check 'the end takes at most ten seconds' ends_within 10
}

habit_many_locations() {
  driver_stop vanish
  scripted_stop habit KILL
  other_start --habit many-locations
  habit 'has a neighbour who answers with forty endless locations'
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  check '... soon' took_less_than 12000
  check '... on it' router_has "TCP 8081 $lan_computer:8081"
  check 'the neighbour was asked for two locations a search at most' \
    eval '[ "$(grep -c "GET /endless" "$network_folder/scripted-other.journal")" -le 4 ]'
  check 'the end takes at most ten seconds' ends_within 10
  other_stop
}

habit_floods() {
  habit 'announces a restart of itself a hundred times a second' --habit floods
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  local before
  before=$(router_journal 'GetGenericPortMappingEntry  ')
  tell 'wait 20000'
  check "the table is read at most three times in 20 s ($(($(router_journal 'GetGenericPortMappingEntry  ') - before)) entries)" \
    eval "[ \$((\$(router_journal 'GetGenericPortMappingEntry  ') - $before)) -le 6 ]"
  check 'a wish is fulfilled meanwhile' tells 'want 2 TCP:8081-8082' 'done *'
  check 'the end takes at most ten seconds' ends_within 10
}

habit_says_goodbye_for_others() {
  driver_stop vanish
  scripted_stop habit KILL
  habit 'has a neighbour who says goodbye in its name'
  other_start --habit says-goodbye-for-others
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  local before
  before=$(router_journal 'GetGenericPortMappingEntry  ')
  tell 'wait 15000'
  check 'the table is left alone' eval "[ \$(router_journal 'GetGenericPortMappingEntry  ') -le $((before + 2)) ]"
  driver_stop
  other_stop
}

habit_falls_silent() {
  driver_stop vanish
  scripted_stop habit KILL
  habit 'falls silent after the first wish'
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  kill -STOP "$(cat "$network_folder/scripted-habit.pid")"
  # It only counts searches: a router that answers none is never used.
  other_start --habit deaf-to-all
  tell 'want 2 TCP:8081-8082'
  check "the failure is told: $answer" eval '[[ $answer == "not done"* ]]'
  local before
  before=$(searches_of_other)
  tell 'wait 60000'
  printf '          calls heard in a minute: %s\n' $(($(searches_of_other) - before))
  # Two calls a search, since nobody answers; after 7 s, 15 and 30.
  check 'it is looked for at most four times in a minute' eval "[ \$((\$(searches_of_other) - $before)) -le 8 ]"
  kill -CONT "$(cat "$network_folder/scripted-habit.pid")"
  check 'its return is seen within 61 s' within 75 router_has 'TCP 8082'
  driver_stop
  other_stop
}

habit_foreign() {
  habit "is the user's own, and is away"
  check 'a port is opened at home' tells 'want 2 TCP:8081-8081' 'done *'
  driver_stop
  scripted_stop habit KILL
  scripted_start habit --name Hotel --model Another --uuid "$other_uuid"
  driver_start
  check "in the hotel nothing is opened" tells 'want 2 TCP:8081-8081' 'not done *'
  check '... for real' never router_has 'TCP 8081'
  check '... the icon warns' tells warning True
  check '... and the menu offers it' tells features '*Use this router*'
  check 'the yes is taken' tells 'feature Use this router' done
  check '... and the port is opened' within 20 router_has "TCP 8081 $lan_computer:8081"
  check '... and the question is gone' within 20 eval 'tells features "*" && [[ $answer != *"Use this router"* ]]'
  driver_stop
  driver_start
  check 'at the next start it needs no yes' tells 'want 2 TCP:8081-8081' 'done *'
  driver_stop
}

habit_quoted_page() {
  habit 'gives a page address with quotes and a second argument' --habit quoted-page
  check 'the menu offers its page' within 15 tells features '*page*'
  driver_stop
}
