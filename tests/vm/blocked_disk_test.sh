#!/usr/bin/env bash
# Disks of virtual PCs that stand still while they are written.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

# As a disk does that repeats a command: both the installer and the PC wait for it.
a_disk_that_stands_still_for_40_s_holds_the_installation_up_but_does_not_end_it() {
  local name
  large_package
  disk_make "$(disk_of virtio)" 64
  start_pc ide && start_pc virtio disk="virtio:$(disk_of virtio)" || return 1
  begin_install --first 2
  for name in ide virtio; do
    vm_await $name "Receiving $LARGE" && vm_slow $name 0 1 || return 1
  done
  sleep 40
  for name in ide virtio; do
    never_said $name "written and safe" && vm_slow $name 0 || return 1
  done
  for name in ide virtio; do
    is_installed $name && never_said $name "The installer is gone" || return 1
  done
  status 0 wait "$installer"
}

run_tests a_disk_that_stands_still_for_40_s_holds_the_installation_up_but_does_not_end_it
