#!/usr/bin/env bash
# Virtual PCs that start the installer system from disks and floppies, by the boot sector and the disk
# loader on them.
set -u
# shellcheck source=tests/vm/bare_pc.sh
. "$(dirname "$0")/bare_pc.sh"

# The kernel is the file 120 there, the RAM disk 121, the loader 122.
IMAGES=${OMNISET_IMAGES:-$BUILD/linux/images}
TEXTS=resources/images
STARTED="installer system"
TOLD="console=ttyS0,115200 loglevel=7"
MIB=$((1 << 20))

assemble() {
  nasm -f bin -o "$CODE/sector" resources/boot_sector.asm &&
    nasm -f bin -I payload/boot/ -o "$CODE/mbr" payload/boot/mbr.asm &&
    head -c 11 "$CODE/sector" >"$CODE/begin" &&
    tail -c +63 "$CODE/sector" | head -c 448 >"$CODE/code"
}

before_tests() {
  assemble || die "The boot code could not be assembled."
}

# make_volume SIZE ARGUMENT...: the image $WORK/disk, formatted by mkfs.fat with these arguments, with
# our boot sector around its parameters.
make_volume() {
  local disk=$WORK/disk
  rm -f "$disk" && truncate -s "$1" "$disk" || return 1
  shift
  mkfs.fat "$@" "$disk" >"$WORK/format.log" 2>&1 || { cat "$WORK/format.log"; return 1; }
  put "$CODE/begin" "$disk" 0 && put "$CODE/code" "$disk" 62
}

copy_in() { mcopy -i "$WORK/disk" "$@"; } # source... ::target

# fill CONFIGURATION: with the installer system, and that boot configuration.
fill() {
  copy_in "$IMAGES/120" ::linux && copy_in "$IMAGES/121" ::initrd.rgz &&
    copy_in "$IMAGES/122" ::ldlinux.sys && copy_in "$1" ::syslinux.cfg
}

# scatter COUNT BYTES: the next files lie in so many holes, each of one cluster of so many bytes.
scatter() {
  local folder=$WORK/fillers
  mkdir "$folder" && head -c $(($1 * 2 * $2)) /dev/zero | split -b "$2" -d -a 4 - "$folder/" || return 1
  mmd -i "$WORK/disk" ::fillers && copy_in "$folder"/* ::fillers &&
    mdel -i "$WORK/disk" "::fillers/*[02468]"
}

# rough_boot OPTION...: with an old and bad BIOS, for which the floppy stands (rough_bios.asm tells what it
# does, and its options), and that tells a geometry with many cylinders.
rough_boot() {
  nasm -f bin -o "$CODE/rough" "$@" tests/vm/rough_bios.asm && truncate -s 1474560 "$WORK/floppy" &&
    put "$CODE/rough" "$WORK/floppy" 0 || return 1
  local cylinders=$(($(stat -c %s "$WORK/disk") / 512 / 68)) unit=0
  local -a first=()
  if [[ " $* " == *DISK=0x81* ]]; then
    truncate -s $((8 * MIB)) "$WORK/first"
    first=(-drive "file=$WORK/first,format=raw,if=ide")
    unit=1
  fi
  boot "${first[@]}" -drive "file=$WORK/disk,format=raw,if=none,id=disk" \
    -device "ide-hd,drive=disk,unit=$unit,cyls=$cylinders,heads=4,secs=17,bios-chs-trans=none" \
    -drive "file=$WORK/floppy,format=raw,if=floppy" -boot a
}

# is_scattered NAME: no two clusters of the file follow each other.
is_scattered() {
  ! mshowfat -i "$WORK/disk" "::$1" | grep -- - || { say "$1 is not scattered"; return 1; }
}

boot() { start_pc -serial "file:$WORK/serial" "$@"; }
ide() { printf 'file=%s,format=raw,if=ide' "$WORK/disk"; }

# The configuration of a disk with the kernel's news on the serial port.
talkative() {
  sed "/APPEND/s/$/ $TOLD/" "$TEXTS/124" >"$WORK/talkative" && echo "$WORK/talkative"
}

where_partition_tables_are_the_sector_is_empty() {
  [ "$(stat -c %s "$CODE/sector")" -eq 512 ] &&
    tail -c 66 "$CODE/sector" | cmp - <(head -c 64 /dev/zero && printf '\x55\xAA') || return 1
  make_volume $((32 * MIB)) -F 16 && ! sfdisk -l "$WORK/disk" | grep "^$WORK/disk"
}

# The floppy controller's output: no motor, and no reset.
motors_are_off() {
  printf 'i /b 0x3f2\n' >&8
  within 10 grep -qF 'portb[0x03f2] = 0x0c' "$WORK/qemu.log" && return 0
  say "the floppy's motor still runs:"
  cat "$WORK/qemu.log"
  return 1
}

a_floppy_starts_and_its_motor_stops() {
  make_volume 1474560 -F 12 && fill "$TEXTS/123" && boot -drive "file=$WORK/disk,format=raw,if=floppy" &&
    serial_says "$STARTED" && serial_says "Starting linux." && motors_are_off
}

scattered_files_start_and_the_kernel_is_told_the_volume() {
  make_volume $((32 * MIB)) -F 16 -s 4 -f 1 -i 00ABCDEF && scatter 800 2048 &&
    fill "$(talkative)" && is_scattered ldlinux.sys && is_scattered linux || return 1
  boot -drive "$(ide)" && serial_says "$STARTED" &&
    serial_says "initrd=initrd.rgz -hdd-install $TOLD omniset.volume=00ABCDEF"
}

# It is alone on its disk, whatever its hidden sectors say.
a_volume_of_2_GB_starts_that_was_formatted_for_a_partition() {
  make_volume $((2048 * MIB)) -F 16 -h 63 && fill "$TEXTS/124" &&
    boot -drive "file=$WORK/disk,format=raw,if=virtio" && serial_says "$STARTED"
}

# With clusters of 64 KB; all data lie beyond sector 65535.
a_volume_of_4_GB_starts() {
  make_volume $((4095 * MIB)) -F 16 -s 128 -R 65408 && fill "$TEXTS/124" &&
    boot -drive "$(ide)" && serial_says "$STARTED"
}

# FAT12 in a partition, from cylinder 294 on. The label and 20 files have names that begin as the
# loader's. The root directory, of 127 entries, does not fill its last sector.
a_bad_bios_starts_a_partition() {
  local number names=()
  make_volume $((8 * MIB)) -F 12 -s 8 -h 20000 -r 128 -n "LDLINUX SYS" && scatter 400 4096 || return 1
  for number in {1..20}; do names+=("$WORK/ldlinux.$number") && echo x >"$WORK/ldlinux.$number"; done
  copy_in "${names[@]}" :: && fill "$TEXTS/124" && is_scattered linux &&
    printf '\177' >"$WORK/entries" && put "$WORK/entries" "$WORK/disk" 17 &&
    mv "$WORK/disk" "$WORK/volume" || return 1
  truncate -s $((32 * MIB)) "$WORK/disk" &&
    printf 'label: dos\n20000,16384,1,*\n' | sfdisk -q "$WORK/disk" &&
    put "$CODE/mbr" "$WORK/disk" 0 &&
    dd if="$WORK/volume" of="$WORK/disk" bs=512 seek=20000 conv=notrunc status=none || return 1
  rough_boot && serial_says "$STARTED"
}

# The kernel lies behind those that can be addressed. The BIOS passes the number of a floppy.
beyond_1024_cylinders_nothing_is_read() {
  make_volume $((48 * MIB)) -F 16 && truncate -s $((36 * MIB)) "$WORK/filler" &&
    copy_in "$IMAGES/122" ::ldlinux.sys && copy_in "$TEXTS/124" ::syslinux.cfg &&
    copy_in "$WORK/filler" :: && copy_in "$IMAGES/120" ::linux || return 1
  rough_boot -DPASSED=1 && serial_says "This disk cannot be read (code F0)."
}

# Nothing is on the first.
a_second_disk_is_read_when_it_is_started() {
  make_volume $((8 * MIB)) -F 12 && copy_in "$IMAGES/122" ::ldlinux.sys &&
    copy_in "$TEXTS/124" ::syslinux.cfg || return 1
  rough_boot -DDISK=0x81 && serial_says "linux is not on this disk."
}

# What has its name is a folder.
without_a_loader_the_boot_fails_and_a_key_restarts() {
  make_volume $((32 * MIB)) -F 16 && copy_in "$IMAGES/120" ::linux && mmd -i "$WORK/disk" ::ldlinux.sys &&
    boot -drive "$(ide)" && screen_says "Boot failed" && ! has_ended && press spc && restarts
}

# Its code would run in circles.
what_is_no_loader_is_not_started() {
  make_volume $((32 * MIB)) -F 16 && printf '\xEB\xFE' >"$WORK/file" &&
    copy_in "$WORK/file" ::ldlinux.sys && boot -drive "$(ide)" && screen_says "Boot failed"
}

# The entry of the loader's cluster 341 lies across two sectors of the table.
without_a_kernel_the_loader_says_so_and_restarts() {
  make_volume 1474560 -F 12 && truncate -s $((330 * 512)) "$WORK/filler" &&
    copy_in "$WORK/filler" :: && copy_in "$IMAGES/122" ::LDLINUX.SYS &&
    mshowfat -i "$WORK/disk" ::LDLINUX.SYS | grep -qF '<332-347>' &&
    copy_in "$TEXTS/124" ::SYSLINUX.CFG || return 1
  boot -drive "file=$WORK/disk,format=raw,if=floppy" &&
    serial_says "linux is not on this disk." && screen_says "linux is not on this disk." &&
    press spc && restarts
}

# The image ends within the kernel.
what_cannot_be_read_is_told() {
  make_volume $((32 * MIB)) -F 16 && copy_in "$IMAGES/122" ::ldlinux.sys &&
    copy_in "$TEXTS/124" ::syslinux.cfg && copy_in "$IMAGES/120" ::linux &&
    truncate -s $MIB "$WORK/disk" || return 1
  boot -drive "$(ide)" && serial_says "This disk cannot be read (code " && press spc && restarts
}

run_tests where_partition_tables_are_the_sector_is_empty a_floppy_starts_and_its_motor_stops \
  scattered_files_start_and_the_kernel_is_told_the_volume \
  a_volume_of_2_GB_starts_that_was_formatted_for_a_partition a_volume_of_4_GB_starts \
  a_bad_bios_starts_a_partition beyond_1024_cylinders_nothing_is_read \
  a_second_disk_is_read_when_it_is_started what_is_no_loader_is_not_started \
  without_a_loader_the_boot_fails_and_a_key_restarts \
  without_a_kernel_the_loader_says_so_and_restarts what_cannot_be_read_is_told
