#!/usr/bin/env bash
# Virtual PCs that start from disks with the installer system's boot code and packages that brought
# none of their own.
set -u
# shellcheck source=tests/vm/bare_pc.sh
. "$(dirname "$0")/bare_pc.sh"

INSTALLED="This disk holds packages that Omniset installed."
PRESS="Press a key to restart."
MIB64=$((64 << 20))

assemble() {
  nasm -f bin -I payload/boot/ -o "$CODE/mbr" payload/boot/mbr.asm &&
    nasm -f bin -I payload/boot/ -o "$CODE/volume" payload/boot/volume.asm &&
    nasm -f bin -o "$CODE/no_extensions" tests/vm/no_extensions.asm
}

# make_disk SIZE TABLE [VOLUME_SECTOR]: $WORK/disk with that partition table (lines as for sfdisk)
# and a volume at the sector.
make_disk() {
  local disk=$WORK/disk
  rm -f "$disk"
  truncate -s "$1" "$disk" && printf 'label: dos\n%b\n' "$2" | sfdisk -q "$disk" &&
    put "$CODE/mbr" "$disk" 0 || return 1
  [ $# -eq 3 ] || return 0
  mkfs.fat -F 16 --offset "$3" -h "$3" "$disk" 16384 >/dev/null 2>&1 &&
    put "$CODE/volume" "$disk" $(($3 * 512 + 62))
}

installed_disk() { make_disk $MIB64 '2048,,6,*' 2048; }

before_tests() {
  assemble || die "The boot code could not be assembled."
}

# boot ARGUMENT...: a PC with the disk on IDE and a serial port that is written to $WORK/serial.
boot() {
  start_pc -serial "file:$WORK/serial" -drive "file=$WORK/disk,format=raw,if=ide" "$@"
}

# both_say TEXT: screen and serial port say it and ask for a key.
both_say() {
  serial_says "$1" && serial_says "$PRESS" && screen_says "$1" && screen_says "$PRESS"
}

an_installed_disk_on_ide_says_what_it_is() {
  installed_disk && boot && both_say "$INSTALLED"
}

an_installed_disk_on_ahci_says_what_it_is() {
  installed_disk && start_pc -machine q35 -serial "file:$WORK/serial" \
    -drive "file=$WORK/disk,format=raw,if=none,id=disk" -device ide-hd,drive=disk &&
    both_say "$INSTALLED"
}

an_installed_disk_on_virtio_says_what_it_is() {
  installed_disk && start_pc -serial "file:$WORK/serial" \
    -drive "file=$WORK/disk,format=raw,if=virtio" && both_say "$INSTALLED"
}

the_text_is_whole() {
  installed_disk && boot && serial_says "$PRESS" || return 1
  tr -d '\r' <"$WORK/serial" >"$WORK/text"
  printf '\n%s\n%s\n%s\n' "$INSTALLED None of them brought a boot" \
    "loader, so the PC cannot start from this disk yet." "$PRESS" | diff - "$WORK/text"
}

the_active_partition_is_the_one_that_starts() {
  make_disk $MIB64 '2048,20480,6\n40960,40960,6,*' 40960 && boot && both_say "$INSTALLED"
}

a_partition_beyond_8_GB_starts() {
  make_disk $((10 << 30)) '20000000,65536,6,*' 20000000 && boot && both_say "$INSTALLED"
}

# An old BIOS that reads by cylinder, head and sector only; the floppy stands for it.
old_bios_boot() {
  truncate -s 1474560 "$WORK/floppy" && put "$CODE/no_extensions" "$WORK/floppy" 0 &&
    boot -drive "file=$WORK/floppy,format=raw,if=floppy" -boot a
}

an_old_bios_starts_it() {
  installed_disk && old_bios_boot && both_say "$INSTALLED"
}

an_old_bios_starts_it_from_sector_63() {
  make_disk $MIB64 '63,,6,*' 63 && old_bios_boot && both_say "$INSTALLED"
}

an_old_bios_cannot_read_beyond_8_GB() {
  make_disk $((10 << 30)) '20000000,65536,6,*' 20000000 && old_bios_boot &&
    both_say "This disk cannot be read."
}

a_disk_without_an_active_partition_says_so() {
  make_disk $MIB64 '2048,,6' 2048 && boot && both_say "This disk has no active partition."
}

a_partition_beyond_the_end_of_the_disk_cannot_be_read() {
  make_disk $((128 << 20)) '204800,,6,*' && truncate -s $MIB64 "$WORK/disk" && boot &&
    both_say "This disk cannot be read."
}

an_active_partition_without_boot_code_says_so() {
  make_disk $MIB64 '2048,,6,*' && boot && both_say "The active partition has no boot code."
}

a_key_on_the_keyboard_restarts_the_pc() {
  installed_disk && boot && serial_says "$PRESS" || return 1
  sleep 2
  ! has_ended || { say "it did not wait for a key"; return 1; }
  press spc
  restarts
}

a_key_on_the_serial_port_restarts_the_pc() {
  installed_disk && mkfifo "$WORK/line.in" "$WORK/line.out" || return 1
  cat "$WORK/line.out" >"$WORK/serial" &
  reader=$!
  start_pc -chardev "pipe,id=line,path=$WORK/line" -serial chardev:line \
    -drive "file=$WORK/disk,format=raw,if=ide"
  serial_says "$PRESS" || return 1
  printf x >"$WORK/line.in"
  restarts
}

without_a_serial_port_the_screen_says_it_and_a_key_restarts() {
  installed_disk && start_pc -drive "file=$WORK/disk,format=raw,if=ide" &&
    screen_says "$INSTALLED" && screen_says "$PRESS" || return 1
  sleep 2
  ! has_ended || { say "it did not wait for a key"; return 1; }
  press ret
  restarts
}

run_tests an_installed_disk_on_ide_says_what_it_is an_installed_disk_on_ahci_says_what_it_is \
  an_installed_disk_on_virtio_says_what_it_is the_text_is_whole \
  the_active_partition_is_the_one_that_starts a_partition_beyond_8_GB_starts \
  an_old_bios_starts_it an_old_bios_starts_it_from_sector_63 an_old_bios_cannot_read_beyond_8_GB \
  a_disk_without_an_active_partition_says_so \
  a_partition_beyond_the_end_of_the_disk_cannot_be_read \
  an_active_partition_without_boot_code_says_so a_key_on_the_keyboard_restarts_the_pc \
  a_key_on_the_serial_port_restarts_the_pc \
  without_a_serial_port_the_screen_says_it_and_a_key_restarts
