#!/usr/bin/env bash
# Virtual PCs with several disks: which of them is installed.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

# installs_the_first BUS COUNT: of so many disks.
installs_the_first() {
  local number others=()
  demo_packages
  disk_make "$(disk_of pc)" 64
  for ((number = 2; number <= $2; number++)); do
    others+=("$WORK/other$number.img")
    make_others_disk "${others[-1]}" || return 1
  done
  start_pc pc disk="$1:$(disk_of pc)" "${others[@]/#/disk=$1:}" || return 1
  install_pcs --first 1 && is_installed pc || return 1
  for number in "${!others[@]}"; do is_untouched "${others[number]}" || return 1; done
}

the_first_of_two_ide_disks_is_installed_and_the_other_left_as_it_is() { installs_the_first ide 2; }
the_first_of_three_ahci_disks_is_installed_and_the_others_left_as_they_are() {
  installs_the_first ahci 3
}

# passes_over OPTION REASON: a disk with this property is left as it is for that reason, which the
# console tells, and the next disk is installed.
passes_over() {
  demo_packages
  make_others_disk "$WORK/other.img" && disk_make "$(disk_of pc)" 64 || return 1
  start_pc pc disk="virtio,$1:$WORK/other.img" disk="virtio:$(disk_of pc)" || return 1
  install_pcs --first 1 && is_installed pc && is_untouched "$WORK/other.img" &&
    says "$WORK/pc/console" "The disk vda is left alone: $2"
}

a_write_protected_disk_is_passed_over_with_a_word() {
  passes_over readonly "it is write-protected."
}

a_disk_with_sectors_of_4096_bytes_is_passed_over_with_a_word() {
  passes_over sectors=4096 "its sectors have 4096 bytes."
}

run_tests the_first_of_two_ide_disks_is_installed_and_the_other_left_as_it_is \
  the_first_of_three_ahci_disks_is_installed_and_the_others_left_as_they_are \
  a_write_protected_disk_is_passed_over_with_a_word \
  a_disk_with_sectors_of_4096_bytes_is_passed_over_with_a_word
