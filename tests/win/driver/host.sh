# shellcheck shell=bash
# The side of a window test that is outside Windows: does what the driver program asks for
# (tests/win/driver/host_channel.h). To be sourced after tests/network/lib.sh, scripts/lib/xvfb.sh,
# scripts/lib/vm.sh, scripts/lib/vm_disk.sh and tests/win/driver/drives.sh; targets and virtual PCs live
# in the second network namespace, their stores, disks and logs in $WORK.
#
#   host_serve FOLDER PID   answers the requests in the folder until the process has ended
#
# The requests:
#
#   start NAME ARGUMENT...          starts omniset-target; its store is $WORK/NAME
#   stop NAME | stop-all            ends it, or all
#   freeze NAME | thaw NAME         it falls silent as if its cable were pulled, or goes on
#   wait NAME SECONDS               waits until it has ended by itself, with success
#   same FOLDER STORE FILE...       both in $WORK: the store holds exactly these files and the script
#   start-pc NAME SETTING...        switches on a virtual PC; its empty disk is $WORK/NAME.img
#   start-pc-from-disk LETTER NAME  the same with a copy of the drive in place of the empty disk; it boots
#                                   from that
#   start-pc-from-floppy LETTER NAME
#                                   the same with an empty disk and a copy of the drive as a floppy
#   stop-pc NAME                    cuts its power
#   type-pc NAME TEXT               types on its serial line
#   picture-of-pc NAME PICTURE      a picture of its screen, $HOST_PICTURES/PICTURE.png
#   mac-of-pc NAME                  prints its MAC address
#   await-pc NAME TEXT              waits until its serial console shows the text
#   await-reboot NAME               waits until it reboots; it is off then
#   disk-holds FOLDER NAME FILE...  its disk is sound and holds exactly these files of $WORK/FOLDER and
#                                   the script, which are in $WORK/NAME.img.files then
#   insert-drive LETTER MEGABYTES   a medium in one of the drives of drives.sh; prints the path of its
#                                   folder, which is that of its image without ".img"
#   lock-drive LETTER               a volume that cannot be opened, LETTER.locked beside the image
#   empty-drive LETTER              takes it out
#   drive-holds LETTER CONFIGURATION FOLDER FILE...
#                                   see drive_holds in drives.sh
#   drive-sum LETTER                prints a checksum of all that is on it
#   picture NAME                    a picture of the screen, $HOST_PICTURES/NAME.png
#   say TEXT                        prints the text

declare -A host_targets=()
# How long it waits for a virtual PC, in seconds: less than the other side waits for an answer.
HOST_PATIENCE=50

# What is said goes where this script's own output goes, not into the answers.
exec {host_voice}>&1

host_stop_all() {
  local name
  for name in "${!host_targets[@]}"; do host_stop "$name"; done
  vm_off_all
}

host_start() {
  local name=$1
  shift
  start_target "$name" "$@"
  host_targets[$name]=$target
  pids=()  # it is looked after here
}

# A frozen target takes no notice of its end until it goes on.
host_stop() {
  local pid=${host_targets[$1]:-}
  [ -n "$pid" ] || return 0
  unset "host_targets[$1]"
  kill "$pid" 2>/dev/null || return 0
  kill -CONT "$pid" 2>/dev/null
  wait "$pid" 2>/dev/null
  return 0
}

host_signal() { # signal name
  kill "-$1" "${host_targets[$2]:-none}"
}

host_wait() { # name seconds
  local pid=${host_targets[$1]:-} left=$(($2 * 50))
  [ -n "$pid" ] || { say "there is no target $1"; return 1; }
  while kill -0 "$pid" 2>/dev/null; do
    [ $((left -= 1)) -gt 0 ] || { tail -n 5 "$WORK/$1.log"; return 1; }
    sleep 0.02
  done
  unset "host_targets[$1]"
  wait "$pid"
}

host_same() { # folder store file...
  local folder=$1 store=$2
  shift 2
  same "$WORK/$folder" "$WORK/$store" "$@"
}

host_start_pc() {
  local name=$1 image=$WORK/$1.img
  shift
  disk_make "$image" 64 && vm_start "$name" "disk=ide:$image" "$@"
}

host_start_pc_from_disk() {
  local image=$WORK/$2.img
  cp --sparse=always "$DRIVES/$1.img" "$image" && vm_start "$2" "disk=ide:$image" boot=disk
}

host_start_pc_from_floppy() {
  local floppy=$WORK/$2.floppy.img
  cp "$DRIVES/$1.img" "$floppy" && host_start_pc "$2" "floppy=$floppy" boot=order:a
}

host_picture_of_pc() {
  mkdir -p "$HOST_PICTURES" && vm_picture "$1" "$HOST_PICTURES/$2.png"
}

host_disk_holds() { # folder name file...
  local folder=$1 image=$WORK/$2.img
  shift 2
  disk_check "$image" && disk_holds "$WORK/$folder" "$image" "$@"
}

host_insert_drive() {
  drive_insert "$@" && printf '%s' "$DRIVES/$1"
}

host_drive_sum() {
  sha256sum "$DRIVES/$1.img" | cut -d ' ' -f 1
}

host_picture() {
  mkdir -p "$HOST_PICTURES" && xvfb_picture "$HOST_PICTURES/$1.png"
}

host_answer() { # word...
  local word=$1
  shift
  case $word in
    start) host_start "$@" ;;
    stop) host_stop "$@" ;;
    stop-all) host_stop_all ;;
    freeze) host_signal STOP "$@" ;;
    thaw) host_signal CONT "$@" ;;
    wait) host_wait "$@" ;;
    same) host_same "$@" ;;
    start-pc) host_start_pc "$@" ;;
    start-pc-from-disk) host_start_pc_from_disk "$@" ;;
    start-pc-from-floppy) host_start_pc_from_floppy "$@" ;;
    stop-pc) vm_off "$@" ;;
    mac-of-pc) vm_mac "$@" ;;
    picture-of-pc) host_picture_of_pc "$@" ;;
    type-pc) vm_type "$@" ;;
    await-pc) vm_await "$@" "$HOST_PATIENCE" ;;
    await-reboot) vm_await_reboot "$@" "$HOST_PATIENCE" ;;
    disk-holds) host_disk_holds "$@" ;;
    insert-drive) host_insert_drive "$@" ;;
    lock-drive) drive_lock "$@" ;;
    empty-drive) drive_empty "$@" ;;
    drive-holds) drive_holds "$@" ;;
    drive-sum) host_drive_sum "$@" ;;
    picture) host_picture "$@" ;;
    say) printf '%s\n' "$*" >&"$host_voice" ;;
    *) echo "unknown request: $word"; return 2 ;;
  esac
}

host_serve() {
  local folder=$1 program=$2 next=1 words status
  mkdir -p "$folder"
  while kill -0 "$program" 2>/dev/null; do
    if [ ! -e "$folder/request-$next" ]; then
      sleep 0.02
      continue
    fi
    mapfile -t words <"$folder/request-$next"
    status=0
    host_answer "${words[@]}" >"$folder/output" 2>&1 || status=$?
    { echo $status; cat "$folder/output"; } >"$folder/part-$next"
    mv "$folder/part-$next" "$folder/answer-$next"
    next=$((next + 1))
  done
  host_stop_all
}
