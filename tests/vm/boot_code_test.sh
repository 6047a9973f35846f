#!/usr/bin/env bash
# Virtual PCs that start from disks with the installer system's boot code and packages that brought
# none of their own.
set -u
# shellcheck source=scripts/lib/setup.sh
. "$(dirname "$0")/../../scripts/lib/setup.sh"
# shellcheck source=tests/run_tests.sh
. tests/run_tests.sh

INSTALLED="This disk holds packages that Omniset installed."
PRESS="Press a key to restart."
MIB64=$((64 << 20))

pc=
reader=
WORK=$(mktemp -d)
CODE=$(mktemp -d)

cleanup() {
  stop_pc
  rm -rf "$WORK" "$CODE"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

assemble() {
  nasm -f bin -I payload/boot/ -o "$CODE/mbr" payload/boot/mbr.asm &&
    nasm -f bin -I payload/boot/ -o "$CODE/volume" payload/boot/volume.asm &&
    nasm -f bin -o "$CODE/no_extensions" tests/vm/no_extensions.asm
}

# put BYTES_FILE IMAGE OFFSET
put() { dd if="$1" of="$2" bs=1 seek="$3" conv=notrunc status=none; }

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

# start_pc ARGUMENT...: leaves its process in pc; its monitor reads from descriptor 8.
start_pc() {
  rm -f "$WORK/monitor"
  mkfifo "$WORK/monitor"
  qemu-system-x86_64 -accel tcg -m 32 -nodefaults -vga std -display none -no-reboot \
    -monitor stdio "$@" <"$WORK/monitor" >"$WORK/qemu.log" 2>&1 &
  pc=$!
  exec 8>"$WORK/monitor"
}

before_tests() {
  assemble || die "The boot code could not be assembled."
}

after_each_test() { stop_pc; }

stop_pc() {
  exec 8>&-
  [ -z "$pc" ] || { kill "$pc" 2>/dev/null && wait "$pc" 2>/dev/null; }
  [ -z "$reader" ] || { kill "$reader" 2>/dev/null && wait "$reader" 2>/dev/null; }
  pc='' reader=
}

# boot ARGUMENT...: a PC with the disk on IDE and a serial port that is written to $WORK/serial.
boot() {
  start_pc -serial "file:$WORK/serial" -drive "file=$WORK/disk,format=raw,if=ide" "$@"
}

# within SECONDS COMMAND...: the command succeeds before the time is over.
within() {
  local left=$(($1 * 10))
  shift
  until "$@"; do
    [ $((left -= 1)) -gt 0 ] || return 1
    sleep 0.1
  done
}

serial_says() {
  within 20 grep -qsF -- "$1" "$WORK/serial" && return 0
  say "expected \"$1\" on the serial port, which says:"
  tail -n 15 "$WORK/serial" "$WORK/qemu.log"
  return 1
}

screen_holds() {
  rm -f "$WORK/screen"
  printf 'pmemsave 0xb8000 4000 "%s"\n' "$WORK/screen" >&8
  sleep 0.2
  # Every second byte is a colour; lines follow each other without an end.
  tr -dc '[:print:]' <"$WORK/screen" >"$WORK/screen.txt" 2>/dev/null
  grep -qF -- "$1" "$WORK/screen.txt"
}

screen_says() {
  within 20 screen_holds "$1" && return 0
  say "expected \"$1\" on the screen, which says:"
  cat "$WORK/screen.txt" "$WORK/qemu.log"
  return 1
}

# both_say TEXT: screen and serial port say it and ask for a key.
both_say() {
  serial_says "$1" && serial_says "$PRESS" && screen_says "$1" && screen_says "$PRESS"
}

has_ended() { ! kill -0 "$pc" 2>/dev/null; }

# A PC that is not to be restarted ends instead.
restarts() {
  within 10 has_ended && return 0
  say "the PC did not restart"
  return 1
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
  printf 'sendkey spc\n' >&8
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
  printf 'sendkey ret\n' >&8
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
