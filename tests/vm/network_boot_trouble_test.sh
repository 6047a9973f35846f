#!/usr/bin/env bash
# PCs that boot over the network when not all goes well.
# shellcheck source=tests/vm/network_boot_lib.sh
. "$(dirname "$0")/network_boot_lib.sh"

# Its firmware tries the network first, after the installation too.
a_pc_that_was_installed_starts_from_its_disk_next() {
  begin_boot_and_install --first 2 &&
    start_pc first boot=order:nc && is_installed first &&
    start_pc first boot=order:nc && vm_await first "packages that Omniset installed" || return
  says "$WORK/err" "gets no answer" &&
    start_pc second boot=network && finish_install && is_installed second
}

# What is half sent stays so, until the PC asks anew.
a_pc_whose_power_was_cut_while_it_loaded_boots_again() {
  begin_boot_and_install --first 1 &&
    start_pc pc boot=network && vm_await pc "Loading linux" && start_pc pc boot=network &&
    finish_install && is_installed pc
}

# The server then sends again what has arrived already.
a_pc_that_stood_still_while_it_loaded_goes_on() {
  local times
  begin_boot_and_install --first 1 &&
    start_pc pc boot=network && vm_await pc "Loading linux" || return
  for times in 1 2 3; do
    kill -STOP "${vm_pids[pc]}" && sleep 1.4 && kill -CONT "${vm_pids[pc]}" && sleep 0.1 || return
  done
  vm_await pc "Announcing on" && ! vm_says pc console "network boot" 2 && finish_install &&
    is_installed pc
}

a_pc_boots_while_other_traffic_floods_the_network() {
  begin_boot_and_install --first 1 || return
  # shellcheck disable=SC2016 # for the other shell
  ip netns exec "$netns2" bash -c 'while :; do
      for port in 67 69; do head -c 300 /dev/urandom >"/dev/udp/192.168.88.1/$port"; done
      sleep 0.01
    done' 2>/dev/null &
  pids+=($!)
  start_pc pc boot=network && finish_install && is_installed pc
}

run_tests a_pc_that_was_installed_starts_from_its_disk_next \
  a_pc_whose_power_was_cut_while_it_loaded_boots_again \
  a_pc_that_stood_still_while_it_loaded_goes_on \
  a_pc_boots_while_other_traffic_floods_the_network
