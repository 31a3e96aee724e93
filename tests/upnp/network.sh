# shellcheck shell=bash
# Three networks on this machine with a real router between them, made of namespaces:
#
#   LAN   192.168.77.0/24   this computer .2, a neighbour .3, the router .1
#   WAN   203.0.113.0/24    somebody outside .99, the router .1
#
# A daemon of this kind refuses to work behind an address of the documentation ranges, as it does behind another router.
# So it is told an address that counts as public, from the radio amateurs' range for tests; the host outside has a route
# to it, and nobody else ever sees it.
#
# Who sources this has set `network_folder`. The functions work on either side of the namespaces' doors, as long as the
# network stands.

tests_upnp=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
lan_router=192.168.77.1
lan_computer=192.168.77.2
lan_neighbour=192.168.77.3
wan_router=203.0.113.1
wan_outside=203.0.113.99
public_address=44.128.0.1
# Where the router's daemon describes itself.
description_url=http://$lan_router:5000/rootDesc.xml

# network_available: says why when such networks can't be made here.
network_available() {
  local program
  for program in ip nft miniupnpd upnpc python3 nsenter unshare; do
    command -v "$program" >/dev/null || {
      echo "$program is missing"
      return 1
    }
  done
  unshare --net "${as_root[@]}" sh -c '
    ip link add probe type bridge && nft add table inet probe && echo 1 >/proc/sys/net/ipv4/ip_forward
  ' >/dev/null 2>&1 || {
    echo 'this machine lets nobody make networks of his own'
    return 1
  }
}

# A user who isn't root is root in a namespace of users.
as_root=()
[ "$(id -u)" = 0 ] || as_root=(--map-root-user)
PATH=$PATH:/usr/sbin:/sbin

# in_network PLACE COMMAND...: runs the command in `router`, `lan`, `neighbour` or `wan`.
in_network() {
  local place=$1
  shift
  nsenter --net="/proc/$(cat "$network_folder/$place.pid")/ns/net" -- "$@"
}

# network_up: makes the networks around this process, whose namespace becomes the router's.
network_up() {
  local place
  echo $$ >"$network_folder/router.pid"
  : >"$network_folder/started"
  for place in lan neighbour wan; do make_place "$place"; done

  ip link set lo up
  ip link add br-lan type bridge
  ip link set br-lan up
  connect lan "$lan_computer" br-lan
  connect neighbour "$lan_neighbour" br-lan
  ip address add "$lan_router/24" dev br-lan
  ip link add wan0 type veth peer name wan0 netns "$(cat "$network_folder/wan.pid")"
  ip link set wan0 up
  ip address add "$wan_router/24" dev wan0
  ip address add "$public_address/32" dev wan0
  echo 1 >/proc/sys/net/ipv4/ip_forward

  in_network wan ip address add "$wan_outside/24" dev wan0
  in_network wan ip link set wan0 up
  in_network wan ip route add "$public_address" via "$wan_router"
  rules_reset
}

# A namespace lives as long as a process that waits in it.
make_place() {
  unshare --net sleep infinity &
  local pid=$!
  echo "$pid" | tee "$network_folder/$1.pid" >>"$network_folder/started"
  local own other tries
  own=$(readlink /proc/self/ns/net)
  for ((tries = 0; tries < 100; ++tries)); do
    other=$(readlink "/proc/$pid/ns/net")
    [ "$other" = "$own" ] || break
    sleep 0.05
  done
  in_network "$1" ip link set lo up
}

# connect PLACE ADDRESS BRIDGE
connect() {
  ip link add "to-$1" type veth peer name eth0 netns "$(cat "$network_folder/$1.pid")"
  ip link set "to-$1" master "$3"
  ip link set "to-$1" up
  in_network "$1" ip address add "$2/24" dev eth0
  in_network "$1" ip link set eth0 up
  in_network "$1" ip route add default via "$lan_router"
}

# rules_reset: the router's own rules as at its start; those for single ports are gone.
rules_reset() {
  in_network router nft -f - <<'END'
flush ruleset
table inet filter {
  chain forward {
    type filter hook forward priority 0; policy drop;
    ct state established,related accept
    iifname "br-lan" accept
    jump miniupnpd
  }
  chain miniupnpd { }
  chain prerouting {
    type nat hook prerouting priority -100; policy accept;
    jump prerouting_miniupnpd
  }
  chain prerouting_miniupnpd { }
  chain postrouting {
    type nat hook postrouting priority 100; policy accept;
    jump postrouting_miniupnpd
    oifname "wan0" masquerade
  }
  chain postrouting_miniupnpd { }
}
END
}

# daemon_start [LINE...]: starts the router's daemon, with these lines in its configuration in the place of the ordinary
# ones of the same name. "double-nat" leaves its public address out.
# Not every script that reads this file passes any.
# shellcheck disable=SC2120
daemon_start() {
  local configuration=$network_folder/miniupnpd.conf line
  cat >"$configuration" <<END
ext_ifname=wan0
ext_ip=$public_address
listening_ip=br-lan
http_port=5000
enable_upnp=yes
enable_natpmp=yes
secure_mode=yes
system_uptime=no
notify_interval=30
uuid=5f1c3d2a-7f63-4a3b-9c55-20a1d0e5a77e
friendly_name=Namespace Router
presentation_url=http://$lan_router/
allow 1024-65535 192.168.77.0/24 1-65535
deny 0-65535 0.0.0.0/0 0-65535
END
  for line in "$@"; do
    case $line in
      double-nat) sed -i '/^ext_ip=/d' "$configuration" ;;
      *=*) sed -i "s|^${line%%=*}=.*|$line|; t; \$!b" "$configuration" && grep -q "^${line%%=*}=" "$configuration" ||
        echo "$line" >>"$configuration" ;;
      *) sed -i "0,/^allow/s|^allow|$line\nallow|" "$configuration" ;;
    esac
  done
  in_network router miniupnpd -f "$configuration" -P "$network_folder/miniupnpd.pid"
  until_true 10 daemon_answers
}

daemon_answers() {
  [[ $(in_network lan upnpc -m "$lan_computer" -u "$description_url" -s) == *Status* ]]
}

# daemon_stop [SIGNAL]
daemon_stop() {
  local pid
  pid=$(cat "$network_folder/miniupnpd.pid" 2>/dev/null) || return 0
  kill "-${1:-TERM}" "$pid" 2>/dev/null || true
  until_true 10 process_is_gone "$pid"
  rm -f "$network_folder/miniupnpd.pid"
}

process_is_gone() { ! kill -0 "$1" 2>/dev/null; }

# scripted_start NAME OPTION...: a router in Python, in the place of the real one or beside it. Its files are
# scripted-NAME.journal and .table; its options are in scripted_router.py.
scripted_start() {
  local files=$network_folder/scripted-$1
  shift
  rm -f "$files".*
  # Not by in_network, whose shell would be the process that is known here.
  nsenter --net="/proc/$(cat "$network_folder/router.pid")/ns/net" -- \
    python3 "$tests_upnp/scripted_router.py" --ready "$files.ready" \
    --journal "$files.journal" --table "$files.table" "$@" >"$files.log" 2>&1 &
  echo $! >"$files.pid"
  echo $! >>"$network_folder/started"
  disown
  until_true 10 test -s "$files.ready"
}

# scripted_stop NAME [SIGNAL]
scripted_stop() {
  local pid
  pid=$(cat "$network_folder/scripted-$1.pid" 2>/dev/null) || return 0
  kill "-${2:-TERM}" "$pid" 2>/dev/null || true
  until_true 10 process_is_gone "$pid"
  rm -f "$network_folder/scripted-$1.pid"
}

link_down() { in_network router ip link set br-lan down; }
link_up() { in_network router ip link set br-lan up; }

# network_down: ends everything that was started here.
network_down() {
  local pid
  daemon_stop KILL
  while read -r pid; do
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
  done <"$network_folder/started"
}
