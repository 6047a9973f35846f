#!/usr/bin/env bash
# Virtual PCs boot over the network by the ROMs of their cards, with nothing but the command line to
# answer them, and are installed.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

# The ROM waits for an IPv6 router first, unless somebody says that there is none.
have_no_router() {
  ip netns exec "$netns2" "$BIN/tests/tools/no-router" "$netns_if2" >/dev/null 2>&1 </dev/null &
  pids+=($!)
}

# begin_boot_and_install ARGUMENT...: the boot service and the installation in one, beside the test.
begin_boot_and_install() {
  have_no_router
  begin_install --boot 192.168.88.20 "$@" && wait_for "$WORK/err" "192.168.88.20" 10
}

# Ends when the installation does.
finish_install() {
  local got
  wait "$installer"
  got=$?
  [ $got -eq 0 ] && return 0
  say "exit status $got; it said:"
  tail -n 15 "$WORK/err" "$WORK/out"
  tail -n 15 "$WORK"/*/console
  return 1
}

is_booted_and_installed() { # card
  demo_packages
  begin_boot_and_install --first 1 &&
    start_pc pc boot=network "card=$1" && finish_install && is_installed pc
}
a_pc_with_e1000_boots_and_is_installed() { is_booted_and_installed e1000; }
a_pc_with_virtio_boots_and_is_installed() { is_booted_and_installed virtio-net-pci; }
a_pc_with_rtl8139_boots_and_is_installed() { is_booted_and_installed rtl8139; }
a_pc_with_pcnet_boots_and_is_installed() { is_booted_and_installed pcnet; }

mapfile -t tests < <(declare -F | sed -n 's/^declare -f \(a_pc_with_.*\)$/\1/p')
run_tests "${tests[@]}"
