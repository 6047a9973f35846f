#!/usr/bin/env bash
# Installations of virtual PCs that break off, and what comes after.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

# Starts a PC and its installation, and returns in the middle of the transfer.
break_into() { # name
  large_package
  start_pc "$1" || return 1
  start_installer --packages "$WORK/packages" --select-all --router "$(vm_mac "$1")" \
    --wait "$VM_PATIENCE"
  vm_await "$1" "Receiving $LARGE"
}

# fails_then_is_installed NAME: the installation that was disturbed fails, the next one succeeds.
fails_then_is_installed() {
  wait "$installer"
  local got=$?
  [ $got -eq 1 ] || { say "exit status $got"; tail -n 5 "$WORK/out" "$WORK/err"; return 1; }
  install_pcs --router "$(vm_mac "$1")" && is_installed "$1" && no_temporary_files
}

a_pc_that_is_reset_in_the_middle_is_installed_again() {
  break_into pc && vm_reset pc && vm_await pc "broke off" && fails_then_is_installed pc
}

a_power_cut_in_the_middle_is_told_and_mended_by_the_next_installation() {
  break_into pc && vm_off pc || return 1
  if disk_holds "$WORK/packages" "$(disk_of pc)" "${names[@]}" >/dev/null; then
    say "what was cut off counts as installed"
    return 1
  fi
  start_pc pc && vm_await pc "broke off" && fails_then_is_installed pc
}

# The PC waits half a minute for the one that it began with.
a_pc_whose_installer_was_killed_is_installed_by_the_next() {
  break_into pc || return 1
  kill -KILL "$installer"
  wait "$installer" 2>/dev/null
  install_pcs --router "$(vm_mac pc)" && is_installed pc &&
    vm_says pc console "The installer is gone. Announcing again." 1
}

run_tests a_pc_that_is_reset_in_the_middle_is_installed_again \
  a_power_cut_in_the_middle_is_told_and_mended_by_the_next_installation \
  a_pc_whose_installer_was_killed_is_installed_by_the_next
