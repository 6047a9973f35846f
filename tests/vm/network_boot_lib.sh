# Sourced by the tests of PCs that boot over the network by the ROMs of their cards.
# shellcheck shell=bash

# A PC takes longer to boot that way, and they do so one after the other.
# shellcheck disable=SC2034 # of lib.sh
INSTALL_WAIT=180
# shellcheck source=tests/vm/lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# begin_boot_and_install ARGUMENT...: the boot service and the installation in one, beside the test.
begin_boot_and_install() {
  demo_packages
  begin_install --boot 192.168.88.20 "$@" && wait_for "$WORK/err" "Answering" 10
}

# Ends when the installation does.
finish_install() {
  local got
  wait "$installer"
  got=$?
  [ $got -eq 0 ] && return 0
  say "exit status $got; it said:"
  tail -n 15 "$WORK/err" "$WORK/out"
  tail -n 15 "$WORK"/*/console
  return 1
}
