# shellcheck shell=bash
# Drives for programs under Wine: a FAT volume in an image file, which they see as a drive's folder and
# as the raw volume. To be sourced by bash scripts that run as root, after tests/network/lib.sh.
#
# Debian packages needed: fuse python3-fusepy mtools dosfstools.
#
#   drives_mount                     empty drives A, E and F; before the Wine server is started, which
#                                    does not see what is mounted later
#   drives_connect PREFIX FORMAT     gives the prefix a disk 1, and the program as its format command
#   drives_unmount
#
# In the folder $DRIVES: X.img, the folder X, and X.fresh, which the format command puts onto X. The
# disk 1 is the drive that was inserted last.

DRIVE_LETTERS=(A E F)
# All that a format writes lies within these bytes.
DRIVE_FORMATTED=262144
DRIVES=
drives_prefix=

drives_mount() {
  local letter tries
  DRIVES=$(mktemp -d)
  for letter in "${DRIVE_LETTERS[@]}"; do
    mkdir -p "$DRIVES/$letter"
    : >"$DRIVES/$letter.img"
    /usr/bin/python3 "$TOP/tests/win/driver/fat_folder.py" "$DRIVES/$letter.img" \
      "$DRIVES/$letter" </dev/null >>"$DRIVES/mount.log" 2>&1 || return
    for ((tries = 0; tries < 100; ++tries)); do
      mountpoint -q "$DRIVES/$letter" && break
      sleep 0.02
    done
  done
}

drives_unmount() {
  local letter
  [ -n "$DRIVES" ] || return 0
  for letter in "${DRIVE_LETTERS[@]}"; do
    if mountpoint -q "$DRIVES/$letter"; then umount -l "$DRIVES/$letter"; fi
  done
  rm -rf "${DRIVES:?}"
  DRIVES=
}

drives_connect() { # prefix program
  drives_prefix=$1
  cp "$2" "$drives_prefix/drive_c/windows/system32/format.com"
}

# drive_insert LETTER MEGABYTES: a medium with a volume and a file. 0 megabytes: a floppy.
drive_insert() {
  local letter=$1 image=$DRIVES/$1.img fresh=$DRIVES/$1.fresh.img size=1440K bits=12
  if [ "$2" -ne 0 ]; then size=$2M bits=16; fi
  truncate -s 0 "$image" && truncate -s "$size" "$image" &&
    mkfs.fat -F "$bits" "$image" >/dev/null || return
  echo "the last copy" | mcopy -i "$image" - ::/precious.txt || return
  rm -f "$fresh" && truncate -s "$size" "$fresh" && mkfs.fat -F "$bits" "$fresh" >/dev/null &&
    head -c "$DRIVE_FORMATTED" "$fresh" >"$DRIVES/$letter.fresh" || return
  rm -f "$fresh"
  ln -sfn "$image" "$drives_prefix/dosdevices/physicaldrive1"
}

# The same, but its volume cannot be opened: it is a path that every open refuses.
drive_lock() { # letter
  rm -f "$DRIVES/$1.locked"
  /usr/bin/python3 -c 'import socket, sys; socket.socket(socket.AF_UNIX).bind(sys.argv[1])' \
    "$DRIVES/$1.locked"
}

# No medium.
drive_empty() { # letter
  : >"$DRIVES/$1.img"
  rm -f "$DRIVES/$1.fresh"
}

# drive_holds LETTER CONFIGURATION FOLDER FILE...: the volume is the one of the format, sound, and has
# the boot sector; it holds exactly the installer system with this configuration image, these files of $WORK/FOLDER, and one more,
# which is in $DRIVES/LETTER.files with all others then.
drive_holds() {
  local letter=$1 image=$DRIVES/$1.img files=$DRIVES/$1.files configuration=$2 folder=$WORK/$3
  local images=$BIN/images name
  shift 3
  fsck.fat -n "$image" || return
  [ "$(head -c 11 "$image" | tail -c 8)" = SYSLINUX ] || { say "no boot sector"; return 1; }
  cmp -i 11 -n 51 "$image" "$DRIVES/$letter.fresh" || return
  rm -rf "$files" && mkdir "$files" && mcopy -m -i "$image" '::/*' "$files" || return
  cmp "$images/120" "$files/linux" && cmp "$images/121" "$files/initrd.rgz" &&
    cmp "$images/122" "$files/ldlinux.sys" &&
    cmp "$TOP/resources/images/$configuration" "$files/syslinux.cfg" || return
  for name in "$@"; do cmp "$folder/$name" "$files/$name" || return; done
  [ "$(find "$files" -type f | wc -l)" -eq $(($# + 5)) ] || { ls "$files"; return 1; }
}
