# Sourced by the tests of virtual PCs: PCs on a switch in the second network namespace, the command
# line in the first. What a PC was sent is looked for on its disk, from outside.
# shellcheck shell=bash

# shellcheck source=tests/network/lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/../network/lib.sh"
# shellcheck source=scripts/lib/vm.sh
. "$TOP/scripts/lib/vm.sh"
# shellcheck source=scripts/lib/vm_disk.sh
. "$TOP/scripts/lib/vm_disk.sh"

stoppers+=(vm_off_all)
LARGE=large-1.0.bdl

make_network() {
  netns_make $MAC_INSTALLER $MAC_TARGET && netns_switch
}

# large_package [BYTES]: in the same folder, alone there.
large_package() {
  rm -rf "$WORK/packages"
  "$MAKE_BDL" "$WORK/packages" --name large --payload-bytes "${1:-20000000}" >/dev/null
  names=("$LARGE")
}

disk_of() { printf '%s/%s.img' "$WORK" "$1"; }

# start_pc NAME [SETTING...]: as vm_start; with an empty IDE disk unless a disk is named.
start_pc() {
  local name=$1
  shift
  case " $* " in
    *' disk='*) ;;
    *)
      [ -e "$(disk_of "$name")" ] || disk_make "$(disk_of "$name")" 64
      set -- disk="ide:$(disk_of "$name")" "$@"
      ;;
  esac
  vm_start "$name" "$@"
}

WITH_ALL=(--packages "$WORK/packages" --select-all --address 192.168.88.2/24
  --gateway 192.168.88.1 --wait "${INSTALL_WAIT:-$VM_PATIENCE}" --reboot)

# install_pcs ARGUMENT...: installs with all packages, an address and a reboot.
install_pcs() {
  status 0 install "${WITH_ALL[@]}" "$@" && return 0
  say "the consoles end with:"
  tail -n 15 "$WORK"/*/console
  return 1
}

# begin_install ARGUMENT...: the same beside the test, as start_installer.
begin_install() { start_installer "${WITH_ALL[@]}" "$@"; }

# A disk of another size with somebody's data, and a copy of it.
make_others_disk() { # image
  disk_make "$1" 48 && yes "What somebody keeps here." | head -c 3000000 |
    dd of="$1" conv=notrunc status=none && cp --sparse=always "$1" "$1.before"
}

# is_untouched IMAGE: the disk is as its copy.
is_untouched() { cmp "$1" "$1.before"; }

# never_said NAME TEXT: the console of the PC has not shown that.
never_said() {
  ! vm_says "$1" console "$2" 1 || { say "the console of $1 has shown \"$2\""; return 1; }
}

# is_installed NAME [CARD]: the PC rebooted, and its disk holds what install_pcs sent, the script for
# that card with it.
is_installed() {
  vm_await_reboot "$1" && has_disk "$(disk_of "$1")" "$(vm_mac "$1" "${2:-0}")"
}

has_disk() { # image mac
  is_whole "$1" && says "$1.files/autorun.scr" "mac-address=$2" &&
    says "$1.files/autorun.scr" "address=192.168.88.2/24" &&
    says "$1.files/autorun.scr" "/ip route add gateway=192.168.88.1"
}

# The disk is sound and holds these packages and nothing else of an installation.
is_whole() { # image
  disk_check "$1" && disk_holds "$WORK/packages" "$1" "${names[@]}"
}

# fails_with NAME TEXT: the installation failed on the PC, for that reason.
fails_with() {
  vm_await "$1" "Installation failed: " || return
  grep -aF "Installation failed: " "$WORK/$1/console" >"$WORK/reason"
  says "$WORK/reason" "$2"
}
