#!/usr/bin/env bash
# What the person in front of a virtual PC sees and does: screen and keyboard, and the serial line.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

# The screen and the serial line both tell that the PC announces itself.
both_consoles_tell() { # name
  vm_await "$1" "Announcing on eth0" || return 1
  vm_screen "$1" >"$WORK/screen.txt"
  says "$WORK/screen.txt" "Announcing on eth0"
}

# As the loader of each way to boot gives them that installs over the network.
both_consoles_work_with_every_command_line() {
  local network=initrd=initrd.rgz
  local floppy="load_ramdisk=1 $network"
  start_pc network append="$network" && start_pc floppy append="$floppy" || return 1
  both_consoles_tell network && both_consoles_tell floppy || return 1
  vm_off_all
  start_pc rom append="root=/dev/ram0 console=ttyS0,115200" && both_consoles_tell rom
}

# Of a screen that is black everywhere the picture holds nothing but zeros.
the_screen_shows_a_picture_of_its_text() {
  start_pc pc || return 1
  vm_await pc "Announcing on eth0" && vm_picture pc "$WORK/screen.ppm" || return 1
  local lit
  lit=$(tail -c +20 "$WORK/screen.ppm" | tr -d '\0' | wc -c)
  [ "$lit" -gt 5000 ] || { say "only $lit bytes of the picture are not black"; return 1; }
}

# reboots_by COMMAND...: a PC is installed and left waiting; the key that the command presses reboots
# it, whether the installer is still there or not.
reboots_by() {
  demo_packages
  start_pc pc || return 1
  start_installer --packages "$WORK/packages" --select-all --wait "$VM_PATIENCE" \
    --router "$(vm_mac pc),02:00:00:00:00:99" --address 192.168.88.2/24 --gateway 192.168.88.1
  vm_await pc "press a key to reboot now" || return 1
  wait_for "$WORK/out" "Remove floppy" 10 || return 1
  [ -z "$left" ] || { kill "$installer"; wait "$installer"; }
  "$@" && is_installed pc && vm_says pc console "$said" 1
}

a_key_of_the_keyboard_reboots_an_installed_pc() {
  local left='' said="Rebooting."
  reboots_by vm_press pc spc
}

a_byte_on_the_serial_line_reboots_an_installed_pc_that_the_installer_has_left() {
  local left=yes said="Rebooting without the installer's word."
  reboots_by vm_type pc x
}

the_serial_console_shows_the_progress() {
  large_package
  start_pc pc || return 1
  install_pcs --first 1 && is_installed pc || return 1
  grep -aoE '[0-9]+ %  large-1.0.bdl' "$WORK/pc/console" | sort -u >"$WORK/shown"
  [ "$(wc -l <"$WORK/shown")" -ge 2 ]
}

# goes_on_with COMMAND...: what the command does to a console of the PC in the middle of the transfer
# does not hold the installation up.
goes_on_with() {
  large_package
  start_pc pc || return 1
  begin_install --first 1
  vm_await pc "Receiving $LARGE" && "$@" && vm_await_reboot pc &&
    has_disk "$(disk_of pc)" "$(vm_mac pc)"
}

a_screen_that_scroll_lock_holds_does_not_hold_the_installation_up() {
  goes_on_with vm_press pc scroll_lock
}

a_serial_line_that_nobody_reads_does_not_hold_the_installation_up() {
  goes_on_with vm_leave_serial pc
}

a_pc_that_starts_from_its_new_disk_says_what_is_on_it() {
  demo_packages
  start_pc pc || return 1
  install_pcs --first 1 && is_installed pc || return 1
  start_pc pc boot=disk && vm_await pc "packages that Omniset installed" || return 1
  vm_screen pc >"$WORK/screen.txt"
  says "$WORK/screen.txt" "packages that Omniset installed" && vm_press pc spc && vm_await_reboot pc
}

run_tests both_consoles_work_with_every_command_line the_screen_shows_a_picture_of_its_text \
  a_key_of_the_keyboard_reboots_an_installed_pc \
  a_byte_on_the_serial_line_reboots_an_installed_pc_that_the_installer_has_left \
  the_serial_console_shows_the_progress \
  a_screen_that_scroll_lock_holds_does_not_hold_the_installation_up \
  a_serial_line_that_nobody_reads_does_not_hold_the_installation_up \
  a_pc_that_starts_from_its_new_disk_says_what_is_on_it
