# Sourced by the tests of boot code: one virtual PC at a time that has nothing but disks, and what it
# says on its serial port ($WORK/serial) and its screen.
# shellcheck shell=bash

# shellcheck source=scripts/lib/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib/setup.sh"
# shellcheck source=tests/run_tests.sh
. "$TOP/tests/run_tests.sh"

# How long one waits for what a PC says, in seconds: emulated on a busy machine it takes its time.
PATIENCE=60

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

after_each_test() { stop_pc; }

# put BYTES_FILE IMAGE OFFSET
put() { dd if="$1" of="$2" bs=1 seek="$3" conv=notrunc status=none; }

# start_pc ARGUMENT...: leaves its process in pc; its monitor reads from descriptor 8.
start_pc() {
  rm -f "$WORK/monitor"
  mkfifo "$WORK/monitor"
  qemu-system-x86_64 -accel tcg -m 32 -nodefaults -vga std -display none -no-reboot \
    -monitor stdio "$@" <"$WORK/monitor" >"$WORK/qemu.log" 2>&1 &
  pc=$!
  exec 8>"$WORK/monitor"
}

# What reads the serial port, where there is such a process, is in reader.
stop_pc() {
  exec 8>&-
  [ -z "$pc" ] || { kill "$pc" 2>/dev/null && wait "$pc" 2>/dev/null; }
  [ -z "$reader" ] || { kill "$reader" 2>/dev/null && wait "$reader" 2>/dev/null; }
  pc='' reader=
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
  within $PATIENCE grep -qsF -- "$1" "$WORK/serial" && return 0
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
  within $PATIENCE screen_holds "$1" && return 0
  say "expected \"$1\" on the screen, which says:"
  cat "$WORK/screen.txt" "$WORK/qemu.log"
  return 1
}

press() { # key, as QEMU calls it
  printf 'sendkey %s\n' "$1" >&8
}

has_ended() { ! kill -0 "$pc" 2>/dev/null; }

# A PC that is not to be restarted ends instead.
restarts() {
  within 10 has_ended && return 0
  say "the PC did not restart"
  return 1
}
