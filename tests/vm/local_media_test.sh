#!/usr/bin/env bash
# Disks and floppies that the command line makes, from which virtual PCs are installed with nothing else:
# from the disk itself, or with the floppy over the network.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

# make_disk IMAGE MIB [ARGUMENT...]: a disk that installs itself, with all packages and a script.
make_disk() {
  local image=$1
  disk_make "$image" "$2" || return
  shift 2
  printf '/ip route add gateway=192.168.88.1\n' >"$WORK/own.rsc"
  status 0 cli disk --device "$image" --packages "$WORK/packages" --select-all \
    --script "$WORK/own.rsc" --yes "$@"
}

# installs_itself BUS MIB: a PC goes from power-on to its next start with such a disk alone.
installs_itself() {
  demo_packages
  make_disk "$(disk_of pc)" "$2" --baud 115200 && is_sound_volume "$(disk_of pc)" || return 1
  start_pc pc disk="$1:$(disk_of pc)" boot=disk && vm_await_reboot pc || return 1
  is_whole "$(disk_of pc)" && has_script "$(disk_of pc)" || return 1
  start_pc pc disk="$1:$(disk_of pc)" boot=disk && vm_await pc "packages that Omniset installed"
}

# The volume as it leaves this computer.
is_sound_volume() {
  fsck.fat -n "$1" >"$1.fsck" 2>&1 || { cat "$1.fsck"; return 1; }
}

has_script() {
  { cat "$WORK/own.rsc" && printf '\n/port set [/port find] baud-rate=115200\n'; } |
    cmp - "$1.files/autorun.scr"
}

a_disk_of_32_MB_installs_itself() { installs_itself virtio 32; }
a_disk_of_512_MB_installs_itself() { installs_itself ide 512; }
a_disk_of_2_GB_installs_itself() { installs_itself ide 2048; }

a_floppy_starts_a_pc_that_is_installed_over_the_network() {
  demo_packages
  status 0 cli floppy --device "$WORK/floppy.img" --label "rack 7" --yes || return 1
  disk_mtools mtype -i "$WORK/floppy.img" ::label.txt | cmp - <(printf 'rack 7') || return 1
  is_sound_volume "$WORK/floppy.img" && cp "$WORK/floppy.img" "$WORK/floppy.before" || return 1
  start_pc pc floppy="$WORK/floppy.img" boot=order:a || return 1
  install_pcs --first 1 && is_installed pc && cmp "$WORK/floppy.img" "$WORK/floppy.before"
}

# A PC with another disk beside its own, of whoever.
another_disk_is_left_alone() {
  demo_packages
  make_others_disk "$WORK/other.img" && make_disk "$(disk_of pc)" 64 --baud 115200 || return 1
  start_pc pc disk="ide:$(disk_of pc)" disk="virtio:$WORK/other.img" boot=disk &&
    vm_await_reboot pc && is_whole "$(disk_of pc)" && is_untouched "$WORK/other.img"
}

nothing_is_written_without_yes() {
  demo_packages
  make_others_disk "$(disk_of pc)" || return 1
  status 2 cli disk --device "$(disk_of pc)" --packages "$WORK/packages" --select-all || return 1
  is_untouched "$(disk_of pc)" && says "$WORK/err" "48 MB"
}

run_tests a_disk_of_32_MB_installs_itself a_disk_of_512_MB_installs_itself \
  a_disk_of_2_GB_installs_itself a_floppy_starts_a_pc_that_is_installed_over_the_network \
  another_disk_is_left_alone nothing_is_written_without_yes
