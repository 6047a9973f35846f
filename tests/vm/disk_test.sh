#!/usr/bin/env bash
# Disks of virtual PCs that hold something already, or on which nothing can be installed.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

FLOPPY_LINE="load_ramdisk=1 initrd=initrd.rgz"

# The table of partitions as other tools read it.
table() {
  sfdisk -d "$1" | grep -v '^label-id:'
}

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
  status 0 install --packages "$WORK/packages" --select-all --first 1 --wait "$VM_PATIENCE" \
    --keep-config --reboot || return 1
  vm_await_reboot pc && says "$WORK/pc/console" "keeping the configuration" || return 1
  disk_read "$image" "$WORK/read" && cmp "$WORK/state" "$WORK/read/router-state.dat" || return 1
  cmp <(head -c 512 "$image") "$WORK/first-sector" || return 1
  disk_remove "$image" router-state.dat && is_whole "$image"
}

# A disk with the files that boot the installer system, alone on it or in a partition.
make_medium() { # image partitioned|whole
  local image=$1 start=0
  disk_make "$image" 64
  if [ "$2" = partitioned ]; then
    start=2048
    echo 'start=2048, type=6, bootable' | sfdisk -q "$image" || return
  fi
  mkfs.fat --offset $start "$image" $((65536 - start / 2)) >/dev/null || return
  disk_mtools mcopy -i "$image@@$((start * 512))" "$VM_IMAGES/120" ::linux &&
    disk_mtools mcopy -i "$image@@$((start * 512))" "$VM_IMAGES/121" ::initrd.rgz &&
    cp "$image" "$image.before"
}

the_disk_that_it_booted_from_is_left_alone_and_the_next_is_taken() {
  demo_packages
  make_medium "$WORK/medium.img" partitioned || return 1
  disk_make "$(disk_of pc)" 64
  start_pc pc append="$FLOPPY_LINE" disk="ide:$WORK/medium.img" disk="ide:$(disk_of pc)" || return 1
  install_pcs --first 1 && is_installed pc && cmp "$WORK/medium.img" "$WORK/medium.img.before"
}

with_no_other_disk_than_that_it_booted_from_it_says_so() {
  demo_packages
  make_medium "$WORK/medium.img" whole || return 1
  start_pc pc append="$FLOPPY_LINE" disk="virtio:$WORK/medium.img" || return 1
  status 1 install --packages "$WORK/packages" --select-all --first 1 --wait "$VM_PATIENCE" ||
    return 1
  fails_with pc "disk" && cmp "$WORK/medium.img" "$WORK/medium.img.before"
}

# After a boot from the network these files are just an old disk's.
a_disk_with_these_files_is_used_after_a_boot_from_the_network() {
  demo_packages
  make_medium "$(disk_of pc)" partitioned || return 1
  start_pc pc || return 1
  install_pcs --first 1 && is_installed pc
}

# A disk whose sector 60,000 cannot be written.
worn_disk() { # image; sets `worn`
  disk_make "$1" 64
  cat >"$1.errors" <<ERRORS
[inject-error]
event = "none"
iotype = "write"
errno = "5"
sector = "60000"
immediately = "off"
once = "off"
ERRORS
  worn=blkdebug:$1.errors:$1
}

a_pc_that_cannot_be_installed_says_why() {
  local name macs='' worn
  large_package 40000000
  disk_make "$WORK/tiny.img" 1
  disk_make "$WORK/small.img" 8
  worn_disk "$WORK/worn.img"
  vm_start none && vm_start tiny disk="ide:$WORK/tiny.img" &&
    vm_start small disk="ahci:$WORK/small.img" && vm_start worn disk="ide:$worn" || return 1
  for name in none tiny small worn; do macs+=,$(vm_mac $name); done
  status 1 install --packages "$WORK/packages" --select-all --router "${macs#,}" \
    --wait "$VM_PATIENCE" || return 1
  [ "$(grep -c '^02:.*failed' "$WORK/out")" -eq 4 ] || { cat "$WORK/out"; return 1; }
  fails_with none "No disk was found." && fails_with tiny "too small" &&
    fails_with small "Not enough space" && fails_with worn "Cannot write"
}

after_a_failure_a_pc_rests_and_announces_itself_again() {
  demo_packages
  vm_start pc || return 1
  start_installer --packages "$WORK/packages" --select-all --first 1 --wait "$VM_PATIENCE"
  vm_await pc "Installation failed" || return 1
  kill "$installer"
  wait "$installer"
  status 3 cli routers --interface "$netns_if1" --seconds 6 || return 1
  status 0 cli routers --interface "$netns_if1" --seconds 8 && says "$WORK/out" "$(vm_mac pc)"
}

run_tests keep_leaves_the_configuration_and_replaces_the_packages \
  the_disk_that_it_booted_from_is_left_alone_and_the_next_is_taken \
  with_no_other_disk_than_that_it_booted_from_it_says_so \
  a_disk_with_these_files_is_used_after_a_boot_from_the_network \
  a_pc_that_cannot_be_installed_says_why after_a_failure_a_pc_rests_and_announces_itself_again
