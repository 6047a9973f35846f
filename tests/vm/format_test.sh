#!/usr/bin/env bash
# Disks as a target formats them, looked at with the tools of others.
set -u
# shellcheck source=scripts/lib/setup.sh
. "$(dirname "$0")/../../scripts/lib/setup.sh"
# shellcheck source=tests/run_tests.sh
. tests/run_tests.sh

FORMAT=$BUILD/linux/tests/tools/format-image
SMALLEST=$((4 << 20))
MEGABYTE=$((1 << 20))

WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
trap 'exit 130' INT TERM
DISK=$WORK/disk
VOLUME=$WORK/volume

# make BYTES: the disk, and its volume by itself.
make() {
  "$FORMAT" "$DISK" "$1" || return 1
  read -r start count type < <(sfdisk -d "$DISK" |
    sed -nE 's/.*start= *([0-9]+), size= *([0-9]+), type= *([0-9a-f]+), bootable$/\1 \2 \3/p')
  [ -n "${type:-}" ] || { say "no active partition:"; sfdisk -d "$DISK"; return 1; }
  dd if="$DISK" of="$VOLUME" bs=1M iflag=skip_bytes,count_bytes skip=$((start * 512)) \
    count=$((count * 512)) conv=sparse status=none
}

# equals WHAT WANTED GOT
equals() {
  [ "$2" = "$3" ] && return 0
  say "expected $1 $2, got $3"
  return 1
}

# volume_is_sound: fsck finds nothing to say, least of all about the kind of FAT.
volume_is_sound() {
  fsck.fat -n -v "$VOLUME" >"$WORK/fsck" 2>&1 && grep -q '^ *2 FATs, 16 bit entries' "$WORK/fsck" &&
    ! grep -qiE 'differ|wrong|invalid|warning|dirty|unusual' "$WORK/fsck" && return 0
  cat "$WORK/fsck"
  return 1
}

# sound BYTES: a disk of this size is one that everybody reads.
sound() {
  make "$1" && volume_is_sound || { say "with $1 bytes"; return 1; }
}

smallest_and_around_every_change_of_form() {
  local size
  for size in $SMALLEST $((SMALLEST + 512)) $((16 * MEGABYTE - 512)) $((16 * MEGABYTE)) \
    $((33 * MEGABYTE - 512)) $((33 * MEGABYTE)) $((33 * MEGABYTE + 512)); do
    sound "$size" || return 1
  done
}

ordinary_sizes() {
  local megabytes
  for megabytes in 5 8 9 10 17 20 32 64 128 129 130 256 257 512 513 600 1000 1024 1025; do
    sound $((megabytes * MEGABYTE)) || return 1
  done
}

# Where the number of clusters comes near the most that FAT16 has.
largest_sizes() {
  local megabytes
  for megabytes in 2040 2046 2047 2048 2049 2050 3072; do
    sound $((megabytes * MEGABYTE)) || return 1
  done
  equals sectors $((2048 * 2048)) "$count"
}

odd_sizes() {
  local size
  for size in 4194816 7777280 12345856 67108352 134742016 268959744 537395712 1074266624; do
    sound "$size" || return 1
  done
}

the_partition_starts_where_it_should() {
  make $SMALLEST && equals start 63 "$start" && equals sectors 8129 "$count" &&
    equals type 4 "$type" || return 1
  make $((64 * MEGABYTE)) && equals start 2048 "$start" &&
    equals sectors $((63 * 2048)) "$count" && equals type 6 "$type"
}

other_programs_find_nothing_wrong_with_the_table() {
  local size
  for size in $SMALLEST $((64 * MEGABYTE)) $((3072 * MEGABYTE)); do
    make "$size" || return 1
    sfdisk --verify "$DISK" >"$WORK/verify" 2>&1 || { cat "$WORK/verify"; return 1; }
    grep -qE 'No errors detected' "$WORK/verify" || { cat "$WORK/verify"; return 1; }
    fdisk -l "$DISK" 2>&1 >"$WORK/list" | tee "$WORK/complaints"
    [ ! -s "$WORK/complaints" ] && grep -q 'FAT16' "$WORK/list" ||
      { cat "$WORK/list"; return 1; }
  done
}

the_volume_has_its_label_and_number_and_is_empty() {
  make $((64 * MEGABYTE)) || return 1
  mdir -i "$DISK@@$((start * 512))" :: >"$WORK/list" 2>&1
  grep -qE 'Volume in drive . is OMNISET' "$WORK/list" &&
    grep -q 'Serial Number is 1020-3041' "$WORK/list" && grep -q 'No files' "$WORK/list" ||
    { cat "$WORK/list"; return 1; }
}

the_volume_knows_its_geometry() {
  make $((64 * MEGABYTE)) || return 1
  minfo -i "$DISK@@$((start * 512))" :: >"$WORK/info" 2>&1
  local line
  for line in 'sector size: 512 bytes' 'cluster size: 4 sectors' 'reserved (boot) sectors: 1' \
    'fats: 2' 'max available root directory slots: 512' 'sectors per track: 63' 'heads: 255' \
    'hidden sectors: 2048' 'physical drive id: 0x80' 'disk type="FAT16   "'; do
    grep -qF "$line" "$WORK/info" || { say "no \"$line\" in:"; cat "$WORK/info"; return 1; }
  done
}

# Filled to the last cluster, through a program of others.
the_volume_can_be_filled() {
  local size free
  for size in $SMALLEST $((64 * MEGABYTE)); do
    make "$size" || return 1
    free=$(mdir -i "$VOLUME" :: | sed -nE 's/^ *([0-9 ]+) bytes free$/\1/p' | tr -d ' ')
    head -c "$free" /dev/urandom >"$WORK/content"
    mcopy -i "$VOLUME" "$WORK/content" ::content && volume_is_sound &&
      mcopy -n -i "$VOLUME" ::content "$WORK/back" && cmp "$WORK/content" "$WORK/back" || return 1
    rm "$WORK/back"
    printf x >"$WORK/one-more"
    mcopy -i "$VOLUME" "$WORK/one-more" ::more >"$WORK/full" 2>&1 &&
      { say "there was more space than free"; return 1; }
  done
  return 0
}

a_smaller_disk_is_refused() {
  "$FORMAT" "$DISK" $((SMALLEST - 512)) 2>"$WORK/err" && { say "formatted"; return 1; }
  grep -q 'too small: it has 3 MB, and at least 4 MB are needed' "$WORK/err" && [ ! -e "$DISK" ]
}

run_tests smallest_and_around_every_change_of_form ordinary_sizes largest_sizes odd_sizes \
  the_partition_starts_where_it_should other_programs_find_nothing_wrong_with_the_table \
  the_volume_has_its_label_and_number_and_is_empty the_volume_knows_its_geometry \
  the_volume_can_be_filled a_smaller_disk_is_refused
