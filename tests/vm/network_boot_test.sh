#!/usr/bin/env bash
# Virtual PCs boot over the network by the ROMs of their cards, with nothing but the command line to
# answer them, and are installed.

# A PC takes longer to boot that way, and they do so one after the other.
INSTALL_WAIT=180
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

# begin_boot_and_install ARGUMENT...: the boot service and the installation in one, beside the test.
begin_boot_and_install() {
  demo_packages
  begin_install --boot 192.168.88.20 "$@" && wait_for "$WORK/err" "Answering" 10
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

is_booted_and_installed_by() { # card
  begin_boot_and_install --first 1 &&
    start_pc pc boot=network "card=$1" && finish_install && is_installed pc
}
a_pc_with_e1000_boots_and_is_installed() { is_booted_and_installed_by e1000; }
a_pc_with_virtio_boots_and_is_installed() { is_booted_and_installed_by virtio-net-pci; }
a_pc_with_rtl8139_boots_and_is_installed() { is_booted_and_installed_by rtl8139; }
a_pc_with_pcnet_boots_and_is_installed() { is_booted_and_installed_by pcnet; }

two_pcs_switched_on_at_once_boot_one_after_the_other() {
  begin_boot_and_install --first 2 &&
    start_pc first boot=network card=e1000 && start_pc second boot=network &&
    finish_install && is_installed first && is_installed second
}

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

a_pc_boots_while_other_traffic_floods_the_network() {
  begin_boot_and_install --first 1 || return
  (while :; do head -c 300 /dev/urandom >/dev/udp/192.168.88.1/67; sleep 0.01; done) 2>/dev/null &
  pids+=($!)
  start_pc pc boot=network && finish_install && is_installed pc
}

# The boot service alone, for an installer that runs elsewhere.
a_pc_booted_by_the_service_alone_waits_for_an_installer() {
  demo_packages
  start_boot && start_pc pc boot=network && vm_await pc "Announcing on" &&
    wait_for "$WORK/boot.out" "all images sent" 5 &&
    install_pcs --first 1 && is_installed pc
}

# A ROM that loads ELF images is handed the one that an Etherboot client gets, by another server.
serve_elf_image() {
  ip netns exec "$netns1" dnsmasq --keep-in-foreground --conf-file=/dev/null --port=0 --user=root \
    --pid-file= --dhcp-leasefile="$WORK/leases" --interface="$netns_if1" --bind-interfaces \
    --dhcp-range=192.168.88.20,192.168.88.30,1h --dhcp-boot=etherboot.elf --enable-tftp \
    --tftp-root="$WORK/served" >"$WORK/dnsmasq.log" 2>&1 </dev/null &
  pids+=($!)
}

the_etherboot_image_starts_as_an_elf_file_and_the_pc_is_installed() {
  demo_packages
  mkdir "$WORK/served"
  start_boot && ask_boot Etherboot-5.4 &&
    ip netns exec "$netns2" curl -sS -o "$WORK/served/etherboot.elf" tftp://192.168.88.1/any &&
    etherboot_image | cmp - "$WORK/served/etherboot.elf" || return
  stop_all
  serve_elf_image
  begin_install --first 1 && start_pc pc boot=network card=e1000 &&
    vm_await pc "network boot (ELF image)" && finish_install && is_installed pc
}

a_pc_without_a_kernel_to_load_says_so_and_starts_over() {
  start_boot && start_pc pc boot=network && vm_await pc "Loading linux" || return
  kill -KILL "$service"
  wait "$service" 2>/dev/null
  vm_await pc "restart" 60 && vm_await_reboot pc 60
}

mapfile -t tests < <(declare -F | sed -n 's/^declare -f \(\(a_pc\|two_pcs\|the_etherboot\)_.*\)$/\1/p')
run_tests "${tests[@]}"
