# shellcheck shell=bash
# The habits of routers in the search, and of hostile or broken neighbours.

habit_end_tags() {
  habit 'has a description of begun elements and a quarter of a million begun ends' --habit end-tags
  check 'the failure is told' tells 'want 2 TCP:8081-8081' 'not done *'
  check '... soon' took_less_than 12000
  check 'the end takes at most ten seconds' ends_within 10
}

habit_slow_search() {
  habit 'answers a search as late as it may' --habit slow-search --longest-lease 30
  check 'a port is opened' tells 'want 2 TCP:8081-8081' 'done *'
  check '... and stays open beyond its lease' stays 40 router_has "TCP 8081 $lan_computer:8081"
  check 'at the farewell it goes' eval 'driver_stop; never router_has "TCP 8081"'
}
