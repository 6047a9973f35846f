#!/usr/bin/env bash
# The installer system on virtual PCs with cards and disks of many kinds.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

# A PC with such a network card and such a disk, which is installed.
install_with() { # card bus
  demo_packages
  disk_make "$(disk_of pc)" 64
  start_pc pc "card=$1" "disk=$2:$(disk_of pc)" || return 1
  install_pcs --router "$(vm_mac pc)" && is_installed pc
}

a_pc_with_e1000_and_ahci_is_installed() { install_with e1000 ahci; }
a_pc_with_virtio_network_and_disk_is_installed() { install_with virtio-net-pci virtio; }
a_pc_with_rtl8139_and_ide_is_installed() { install_with rtl8139 ide; }
a_pc_with_pcnet_and_ahci_is_installed() { install_with pcnet ahci; }
a_pc_with_ne2k_and_ide_is_installed() { install_with ne2k_pci ide; }

two_pcs_are_installed_at_once() {
  demo_packages
  start_pc one && start_pc two card=e1000 || return 1
  install_pcs --first 2 && is_installed one && is_installed two
}

four_pcs_are_installed_at_once() {
  demo_packages
  local name
  for name in one two three four; do start_pc $name || return 1; done
  install_pcs --first 4 || return 1
  for name in one two three four; do is_installed $name || return 1; done
}

packages_of_80_MB_in_all_are_installed() {
  local number
  names=()
  for number in 1 2 3 4; do
    "$MAKE_BDL" "$WORK/packages" --name "part$number" --payload-bytes 20000000 --seed "$number" \
      >/dev/null
    names+=("part$number-1.0.bdl")
  done
  disk_make "$(disk_of pc)" 128
  start_pc pc || return 1
  install_pcs --first 1 && is_installed pc
}

an_own_script_is_installed() {
  demo_packages
  printf '/system identity set name=rack\r\n\344 is no ASCII\n' >"$WORK/own.rsc"
  start_pc pc || return 1
  status 0 install --packages "$WORK/packages" --select-all --first 1 --wait "$VM_PATIENCE" \
    --reboot --script "$WORK/own.rsc" || return 1
  vm_await_reboot pc && is_whole "$(disk_of pc)" &&
    cmp "$WORK/own.rsc" "$(disk_of pc).files/autorun.scr"
}

# The window and the command line show it to the operator.
the_label_tells_the_product_and_the_card() {
  demo_packages
  start_pc pc card=e1000 || return 1
  install_pcs --first 1 --json && is_installed pc || return 1
  head -n 1 "$WORK/out" >"$WORK/first"
  says "$WORK/first" '"label":"Omniset' && says "$WORK/first" e1000
}

run_tests a_pc_with_e1000_and_ahci_is_installed a_pc_with_virtio_network_and_disk_is_installed \
  a_pc_with_rtl8139_and_ide_is_installed a_pc_with_pcnet_and_ahci_is_installed \
  a_pc_with_ne2k_and_ide_is_installed two_pcs_are_installed_at_once \
  four_pcs_are_installed_at_once packages_of_80_MB_in_all_are_installed \
  an_own_script_is_installed the_label_tells_the_product_and_the_card
