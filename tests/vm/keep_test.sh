#!/usr/bin/env bash
# Installations of virtual PCs that keep the configuration.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

KEEPING=(--packages "$WORK/packages" --select-all --first 1 --wait "$VM_PATIENCE" --keep-config
  --reboot)

# What the router wrote stays, with the partition; the packages are those of the second installation.
keep_leaves_the_configuration_and_replaces_the_packages() {
  local image
  image=$(disk_of pc)
  demo_packages
  start_pc pc || return 1
  install_pcs --first 1 && is_installed pc || return 1
  head -c 300000 /dev/urandom >"$WORK/state"
  disk_put "$image" "$WORK/state" router-state.dat || return 1
  head -c 512 "$image" >"$WORK/first-sector"
  large_package
  start_pc pc || return 1
  status 0 install "${KEEPING[@]}" || return 1
  vm_await_reboot pc && says "$WORK/pc/console" "keeping the configuration" || return 1
  disk_read "$image" "$WORK/read" && cmp "$WORK/state" "$WORK/read/router-state.dat" || return 1
  cmp <(head -c 512 "$image") "$WORK/first-sector" || return 1
  disk_remove "$image" router-state.dat && is_whole "$image"
}

# Waits until half of the large file has come.
await_half() { # name
  local limit=$((SECONDS + VM_PATIENCE))
  until grep -aqE ' [5-9][0-9] % ' "$WORK/$1/console"; do
    [ $SECONDS -lt "$limit" ] || { say "$1 does not show 50 %"; return 1; }
    sleep 0.05
  done
}

# On this disk half of the package leaves no room for a whole one.
a_power_cut_in_the_middle_of_a_large_file_takes_no_room_from_the_next_installation() {
  local image
  image=$(disk_of pc)
  disk_make "$image" 32 && echo 'start=2048, type=6, bootable' | sfdisk -q "$image" &&
    mkfs.fat -F 16 --offset 2048 -h 2048 "$image" $((31 << 10)) >/dev/null || return 1
  head -c 300000 /dev/urandom >"$WORK/state"
  disk_put "$image" "$WORK/state" router-state.dat || return 1
  large_package 27000000
  start_pc pc || return 1
  start_installer "${KEEPING[@]}"
  await_half pc && vm_off pc || return 1
  disk_list "$image" >"$WORK/list" && says "$WORK/list" omniset.tmp || return 1
  [ "$(sed -nE 's/^ *([0-9 ]+) bytes free$/\1/p' "$WORK/list" | tr -d ' ')" -lt 27000000 ] ||
    { say "there is room for another:"; cat "$WORK/list"; return 1; }
  start_pc pc && vm_await pc "broke off" && status 1 wait "$installer" || return 1
  status 0 install "${KEEPING[@]}" && vm_await_reboot pc || return 1
  disk_read "$image" "$WORK/read" && cmp "$WORK/state" "$WORK/read/router-state.dat" || return 1
  disk_remove "$image" router-state.dat && disk_holds "$WORK/packages" "$image" "${names[@]}"
}

# Where the configuration may be, but not where an installation would keep it.
a_disk_that_is_one_volume_without_a_partition_is_neither_kept_nor_erased() {
  local image
  image=$(disk_of pc)
  demo_packages
  disk_make "$image" 64 && mkfs.fat "$image" >/dev/null &&
    disk_mtools mcopy -i "$image" "$0" ::config.txt && cp "$image" "$image.before" || return 1
  start_pc pc || return 1
  status 1 install "${KEEPING[@]}" || return 1
  fails_with pc "cannot be kept" && is_untouched "$image"
}

run_tests keep_leaves_the_configuration_and_replaces_the_packages \
  a_power_cut_in_the_middle_of_a_large_file_takes_no_room_from_the_next_installation \
  a_disk_that_is_one_volume_without_a_partition_is_neither_kept_nor_erased
