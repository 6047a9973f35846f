# shellcheck shell=bash
# Two networks of our own, joined by a cable: a pair of network namespaces with a veth pair between
# them. To be sourced by bash scripts that run as root.
#
# Debian package needed: iproute2.
#
#   netns_make MAC1 MAC2    makes the pair; sets netns1, netns2 (the namespaces) and netns_if1,
#                           netns_if2 (their interfaces: 192.168.88.1/24 and 192.168.88.2/24)
#   netns_switch            puts a switch into the second namespace, to which the cable is plugged:
#                           netns_if2 is its own interface from now on, with the MAC address and the
#                           IPv4 address that the cable's end had
#   netns_tap NAME          makes a TAP device on that switch, for a virtual PC; it may be there
#   netns_remove            deletes this pair and nothing else; fit for a trap, at any moment
#
# The names hold the process id, so scripts that run at once do not meet. One pair per process.

netns1=omniset-$$-1
netns2=omniset-$$-2
# An interface's name has at most 15 characters.
netns_if1=om$$-1
netns_if2=om$$-2

netns_make() {
  local mac1=$1 mac2=$2
  netns_remove
  netns_if2=om$$-2
  ip netns add "$netns1" &&
    ip netns add "$netns2" &&
    ip link add "$netns_if1" netns "$netns1" address "$mac1" type veth \
      peer name "$netns_if2" netns "$netns2" address "$mac2" &&
    netns_bring_up "$netns1" "$netns_if1" 192.168.88.1/24 &&
    netns_bring_up "$netns2" "$netns_if2" 192.168.88.2/24 &&
    netns_await_link "$netns1" "$netns_if1" &&
    netns_await_link "$netns2" "$netns_if2"
}

# Broadcasts to 255.255.255.255 need a route where there is no default one.
netns_bring_up() {
  local namespace=$1 interface=$2 address=$3
  ip -n "$namespace" link set lo up &&
    ip -n "$namespace" address add "$address" dev "$interface" &&
    ip -n "$namespace" link set "$interface" up &&
    ip -n "$namespace" route add 255.255.255.255/32 dev "$interface"
}

# The link comes up some time after the command; what is sent before is lost.
netns_await_link() {
  local namespace=$1 interface=$2 tries
  for ((tries = 0; tries < 200; tries++)); do
    case $(ip -n "$namespace" -o link show dev "$interface") in
      *' state UP '*) return 0 ;;
    esac
    sleep 0.05
  done
  echo "the link of $interface did not come up" >&2
  return 1
}

netns_switch() {
  local cable=$netns_if2 mac
  mac=$(ip netns exec "$netns2" cat "/sys/class/net/$cable/address") &&
    ip -n "$netns2" address flush dev "$cable" &&
    ip -n "$netns2" link add switch address "$mac" type bridge &&
    ip -n "$netns2" link set "$cable" master switch &&
    netns_bring_up "$netns2" switch 192.168.88.2/24 &&
    netns_await_link "$netns2" switch &&
    netns_if2=switch
}

netns_tap() {
  local name=$1
  ip -n "$netns2" link show "$name" >/dev/null 2>&1 ||
    { ip -n "$netns2" tuntap add "$name" mode tap &&
      ip -n "$netns2" link set "$name" up master switch; }
}

netns_remove() {
  local namespace
  for namespace in "$netns1" "$netns2"; do
    if [ -e "/run/netns/$namespace" ]; then ip netns delete "$namespace"; fi
  done
}
