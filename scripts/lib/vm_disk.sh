# shellcheck shell=bash
# Disks of virtual PCs: raw images, read with tools that are not ours. To be sourced by bash scripts.
#
# Debian packages needed: fdisk dosfstools mtools.
#
#   disk_make FILE MIB               an empty disk
#   disk_partition FILE              prints "START SIZE TYPE" of the only partition, in sectors; fails
#                                    unless there is just one, and it is active
#   disk_check FILE                  whether the file system on it is sound
#   disk_list FILE                   what is in its root folder
#   disk_read FILE FOLDER            copies the files of the root folder into a new folder
#   disk_put FILE SOURCE NAME        copies a file into the root folder
#   disk_remove FILE NAME            deletes one there
#   disk_holds FOLDER FILE NAME...   whether the root folder holds exactly the folder's files of these
#                                    names, "autorun.scr" and the mark of a complete installation

# The mark of a complete installation: a line with CRC-32, size and name for each file.
DISK_MARK=omniset.ok

disk_make() {
  mkdir -p "$(dirname "$1")" && rm -f "$1" && truncate -s "${2}M" "$1"
}

disk_partition() {
  local table
  table=$(sfdisk -d "$1" | grep 'start=') || { echo "no partition on $1" >&2; return 1; }
  if [[ $table == *start=*start=* || $table != *bootable* ]]; then
    printf 'not one active partition:\n%s\n' "$table" >&2
    return 1
  fi
  sed -E 's/.*start= *([0-9]+), size= *([0-9]+), type= *([0-9a-f]+).*/\1 \2 \3/' <<<"$table"
}

disk_volume() { # image; the volume as mtools name it
  local start rest
  read -r start rest < <(disk_partition "$1") && [[ $start =~ ^[0-9]+$ ]] &&
    printf '%s@@%d' "$1" $((start * 512))
}

disk_mtools() { # command argument...
  MTOOLS_SKIP_CHECK=1 "$@" </dev/null
}

disk_check() {
  local start size rest volume=$1.volume status
  read -r start size rest < <(disk_partition "$1") && [[ $start =~ ^[0-9]+$ ]] || return
  dd if="$1" of="$volume" bs=1M iflag=skip_bytes,count_bytes skip=$((start * 512)) \
    count=$((size * 512)) conv=sparse status=none || return
  fsck.fat -n "$volume" >"$1.fsck" 2>&1
  status=$?
  rm -f "$volume"
  [ $status -eq 0 ] || { cat "$1.fsck"; return 1; }
}

disk_list() {
  local volume
  volume=$(disk_volume "$1") && disk_mtools mdir -i "$volume" ::
}

disk_read() {
  local volume
  rm -rf "$2"
  mkdir -p "$2"
  volume=$(disk_volume "$1") && disk_mtools mcopy -i "$volume" -s -m :: "$2"
}

disk_put() {
  local volume
  volume=$(disk_volume "$1") && disk_mtools mcopy -i "$volume" "$2" "::$3"
}

disk_remove() {
  local volume
  volume=$(disk_volume "$1") && disk_mtools mdel -i "$volume" "::$2"
}

# Needs `same` of tests/network/lib.sh.
disk_holds() {
  local folder=$1 image=$2 copy=$2.files
  shift 2
  disk_read "$image" "$copy" || return
  disk_mark_counts "$copy" "$@" autorun.scr && rm "$copy/$DISK_MARK" && same "$folder" "$copy" "$@"
}

# The last bytes of a gzip file are the checksum and the size of what is in it.
disk_mark_counts() { # copy name...
  local copy=$1 name sum
  shift
  [ -s "$copy/$DISK_MARK" ] || { echo "no $DISK_MARK, but:"; ls "$copy"; return 1; }
  for name in "$@"; do
    [ -e "$copy/$name" ] || { echo "no $name, but:"; ls "$copy"; return 1; }
    sum=$(gzip -1 -c "$copy/$name" | tail -c 8 | od -An -v -tx4 --endian=little | cut -c 2-9)
    grep -qx "$sum $(stat -c %s "$copy/$name") $name" "$copy/$DISK_MARK" || {
      echo "$DISK_MARK does not tell $sum of $name:"
      cat "$copy/$DISK_MARK"
      return 1
    }
  done
}
