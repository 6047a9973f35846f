#!/usr/bin/env bash
# The boot service by itself, and the image that it has for Etherboot.
# shellcheck source=tests/vm/network_boot_lib.sh
. "$(dirname "$0")/network_boot_lib.sh"

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
  vm_await pc "the server fell silent" 60 && start_boot && vm_await pc "Announcing on"
}

run_tests a_pc_booted_by_the_service_alone_waits_for_an_installer \
  the_etherboot_image_starts_as_an_elf_file_and_the_pc_is_installed \
  a_pc_without_a_kernel_to_load_says_so_and_starts_over
