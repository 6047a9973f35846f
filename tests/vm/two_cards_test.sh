#!/usr/bin/env bash
# Virtual PCs with more than one network card.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

a_card_without_a_link_is_left_alone() {
  demo_packages
  start_pc pc card=e1000:unplugged card=virtio-net-pci || return 1
  install_pcs --first 1 && is_installed pc 1 || return 1
  grep -aF "(e1000)" "$WORK/pc/console" | tail -n 1 >"$WORK/last"
  says "$WORK/last" "link"
}

a_pc_announces_itself_on_both_cards_and_keeps_to_the_one_of_the_offer() {
  demo_packages
  start_pc pc card=virtio-net-pci card=virtio-net-pci || return 1
  vm_await pc "Announcing on eth0" && vm_await pc "Announcing on eth1" || return 1
  status 0 cli routers --interface "$netns_if1" --seconds 2 || return 1
  says "$WORK/out" "$(vm_mac pc 0)" && says "$WORK/out" "$(vm_mac pc 1)" || return 1
  status 0 install --packages "$WORK/packages" --select-all --router "$(vm_mac pc 1)" \
    --wait "$VM_PATIENCE" --address 192.168.88.2/24 --gateway 192.168.88.1 || return 1
  status 3 cli routers --interface "$netns_if1" --seconds 3 || return 1
  vm_type pc x && is_installed pc 1
}

run_tests a_card_without_a_link_is_left_alone \
  a_pc_announces_itself_on_both_cards_and_keeps_to_the_one_of_the_offer
