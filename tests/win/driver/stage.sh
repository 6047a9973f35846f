# shellcheck shell=bash
# Where the window is driven: a screen of its own, Wine in one network namespace, targets in another.
# To be sourced by bash scripts that run as root.
#
#   stage_open [WIDTHxHEIGHT [DPI [managed]]]
#                                    makes all of it; 96 dots to the inch unless told otherwise, and
#                                    with `managed` a window manager
#   stage_open_with_drives ...       the same, with the drives of drives.sh
#   stage_run EXE [ARGUMENT...]      runs a driver program and does what it asks of this side
#                                    (host.sh); what it prints goes to the standard output at its end
#   stage_close                      takes all of it away; also done when the script ends
#
# $WORK is the folder that both sides use, $HOST_PICTURES the one for pictures. OMNISET_WINDOWS_BUILD
# names another build folder than build/windows.

# shellcheck source=tests/network/lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/../../network/lib.sh"
# shellcheck source=scripts/lib/wine.sh
. "$TOP/scripts/lib/wine.sh"
# shellcheck source=scripts/lib/xvfb.sh
. "$TOP/scripts/lib/xvfb.sh"
# shellcheck source=scripts/lib/vm.sh
. "$TOP/scripts/lib/vm.sh"
# shellcheck source=scripts/lib/vm_disk.sh
. "$TOP/scripts/lib/vm_disk.sh"
# shellcheck source=tests/win/driver/drives.sh
. "$TOP/tests/win/driver/drives.sh"
# shellcheck source=tests/win/driver/host.sh
. "$TOP/tests/win/driver/host.sh"

WINDOWS=${OMNISET_WINDOWS_BUILD:-$BUILD/windows}
stage_prefix=$BUILD/wine-prefix-$$

stage_close() {
  host_stop_all
  wine_stop
  rm -rf "$stage_prefix"
  xvfb_stop
  drives_unmount
}

stage_at_exit() {
  stage_close
  cleanup
}
trap stage_at_exit EXIT

# A path as programs under Wine see it.
windows_path() {
  printf 'Z:%s' "${1//\//\\}"
}

stage_open() {
  netns_make $MAC_INSTALLER $MAC_TARGET || die "The network namespaces could not be made."
  xvfb_start "${1:-1280x1024}" || exit 1
  if [ "${3:-}" = managed ]; then xvfb_manage; fi
  wine_screen_prefix "$stage_prefix" "$netns1" "${2:-96}" || exit 1
}

# Where there can be no drives, only what uses them fails, and says so.
stage_open_with_drives() {
  drives_mount || say "There can be no drives here: $(tail -n 1 "$DRIVES/mount.log")"
  stage_open "$@"
  drives_connect "$stage_prefix" "$WINDOWS/tests/win/format.exe"
}

stage_run() {
  local program
  OMNISET_TEST_FOLDER=$(windows_path "$WORK")
  OMNISET_TEST_PROGRAM=$(windows_path "$WINDOWS/ui/Omniset.exe")
  OMNISET_TEST_DRIVES=${DRIVES:+$(windows_path "$DRIVES")}
  export OMNISET_TEST_FOLDER OMNISET_TEST_PROGRAM OMNISET_TEST_DRIVES
  mkdir -p "$WORK/host"
  rm -f "$WORK"/host/*
  wine_run "$@" &
  program=$!
  host_serve "$WORK/host" "$program"
  wait "$program"
}
