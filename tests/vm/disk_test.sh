#!/usr/bin/env bash
# Disks of virtual PCs that hold something already, or on which nothing can be installed.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

FLOPPY_LINE="load_ramdisk=1 initrd=initrd.rgz"

# A disk with the files that boot the installer system, and data of somebody, alone on it or in a
# partition.
make_medium() { # image partitioned|whole
  local image=$1 start=0
  disk_make "$image" 64
  if [ "$2" = partitioned ]; then
    start=2048
    echo 'start=2048, type=6, bootable' | sfdisk -q "$image" || return
  fi
  mkfs.fat --offset $start "$image" $((65536 - start / 2)) >/dev/null || return
  yes "What somebody keeps here." | head -c 3000000 >"$image.data"
  disk_mtools mcopy -i "$image@@$((start * 512))" "$VM_IMAGES/120" ::linux &&
    disk_mtools mcopy -i "$image@@$((start * 512))" "$VM_IMAGES/121" ::initrd.rgz &&
    disk_mtools mcopy -i "$image@@$((start * 512))" "$image.data" ::data.txt &&
    cp --sparse=always "$image" "$image.before"
}

the_disk_that_it_booted_from_is_left_alone_and_the_next_is_taken() {
  demo_packages
  make_medium "$WORK/medium.img" partitioned || return 1
  disk_make "$(disk_of pc)" 64
  start_pc pc append="$FLOPPY_LINE" disk="ide:$WORK/medium.img" disk="ide:$(disk_of pc)" || return 1
  install_pcs --first 1 && is_installed pc && is_untouched "$WORK/medium.img" &&
    says "$WORK/pc/console" "The disk sda is left alone: it holds the installer system"
}

with_no_other_disk_than_that_it_booted_from_it_says_so() {
  demo_packages
  make_medium "$WORK/medium.img" whole || return 1
  start_pc pc append="$FLOPPY_LINE" disk="virtio:$WORK/medium.img" || return 1
  status 1 install --packages "$WORK/packages" --select-all --first 1 --wait "$VM_PATIENCE" ||
    return 1
  fails_with pc "disk" && is_untouched "$WORK/medium.img"
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
  status 3 cli routers --interface "$netns_if1" --seconds 4 || return 1
  status 0 cli routers --interface "$netns_if1" --seconds 12 && says "$WORK/out" "$(vm_mac pc)"
}

# all_is_flushed NAME: of the IDE commands that QEMU has told so far, one to flush the disk's cache (E7,
# EA) comes after the last that writes.
all_is_flushed() {
  local commands=$WORK/$1.commands
  grep -aoE 'cmd 0x(30|34|35|39|3d|c5|ca|ce|e7|ea)$' "$WORK/$1/qemu.log" >"$commands"
  if [ "$(grep -cvE 'e7|ea' "$commands")" -lt 10 ] || ! tail -n 1 "$commands" | grep -qE 'e7|ea'; then
    say "no writes, or none that is flushed, at the end of:"
    tail -n 5 "$commands"
    return 1
  fi
}

# The power may go off when it says so, and a disk forgets what is in its cache then.
when_a_pc_says_that_all_is_safe_the_cache_of_the_disk_is_flushed() {
  demo_packages
  start_pc pc trace=ide_exec_cmd || return 1
  begin_install --first 1
  vm_await pc "are written and safe" || return 1
  all_is_flushed pc && is_installed pc && all_is_flushed pc
}

# To look at them all takes more memory than the PC has to spare, and minutes.
a_pc_whose_disk_has_70000_files_in_its_root_folder_is_installed() {
  local image
  image=$(disk_of pc)
  demo_packages
  disk_make "$image" 160 && echo 'start=2048, type=c, bootable' | sfdisk -q "$image" &&
    mkfs.fat -F 32 -s 4 --offset 2048 "$image" $((159 << 10)) >/dev/null &&
    tests/vm/huge_folder "$image" $((2048 * 512)) 70000 || return 1
  start_pc pc disk="virtio:$image" || return 1
  vm_await pc "Disks: vda 160 MB" && install_pcs --first 1 && is_installed pc
}

run_tests the_disk_that_it_booted_from_is_left_alone_and_the_next_is_taken \
  with_no_other_disk_than_that_it_booted_from_it_says_so \
  a_disk_with_these_files_is_used_after_a_boot_from_the_network \
  a_pc_that_cannot_be_installed_says_why after_a_failure_a_pc_rests_and_announces_itself_again \
  when_a_pc_says_that_all_is_safe_the_cache_of_the_disk_is_flushed \
  a_pc_whose_disk_has_70000_files_in_its_root_folder_is_installed
