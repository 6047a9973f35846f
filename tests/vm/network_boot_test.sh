#!/usr/bin/env bash
# Virtual PCs with all kinds of cards boot over the network by their ROMs, with nothing but the command
# line to answer them, and are installed.
# shellcheck source=tests/vm/network_boot_lib.sh
. "$(dirname "$0")/network_boot_lib.sh"

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

run_tests a_pc_with_e1000_boots_and_is_installed a_pc_with_virtio_boots_and_is_installed \
  a_pc_with_rtl8139_boots_and_is_installed a_pc_with_pcnet_boots_and_is_installed \
  two_pcs_switched_on_at_once_boot_one_after_the_other
