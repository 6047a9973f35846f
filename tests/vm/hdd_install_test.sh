#!/usr/bin/env bash
# Virtual PCs that are installed by the disk that they were started from, with the packages on it. Here
# the kernel comes from outside, with the command line that the disk's loader gives it.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

# make_own_disk IMAGE MIB SERIAL: a disk as it is made for a local installation, without its loader; the
# packages are in the folder in the reverse order of `names`.
make_own_disk() {
  local image=$1 number
  disk_make "$image" "$2" && mkfs.fat -i "$3" "$image" >/dev/null || return
  printf '# of this router\n/ip route add gateway=192.168.88.1\n' >"$WORK/packages/autorun.scr"
  put_own "$image" "$VM_IMAGES/120" linux && put_own "$image" "$VM_IMAGES/121" initrd.rgz &&
    put_own "$image" "$VM_IMAGES/121" ldlinux.sys &&
    put_own "$image" "$TOP/resources/images/124" syslinux.cfg || return
  for ((number = ${#names[@]} - 1; number >= 0; number--)); do
    put_own "$image" "$WORK/packages/${names[number]}" "${names[number]}" || return
  done
  put_own "$image" "$WORK/packages/autorun.scr" autorun.scr &&
    cp --sparse=always "$image" "$image.before"
}

put_own() { disk_mtools mcopy -i "$1" "$2" "::$3"; }

# start_own NAME SERIAL DISK...: as the loader of the volume with that number starts the PC.
start_own() {
  local name=$1 line="load_ramdisk=1 initrd=initrd.rgz -hdd-install omniset.volume=$2"
  shift 2
  vm_start "$name" append="$line" "${@/#/disk=}"
}

# stops_with NAME TEXT: on both consoles; a key starts the PC again.
stops_with() {
  vm_await "$1" "press a key to start it now" || return 1
  vm_screen "$1" | tr -d '\n' >"$WORK/screen.txt"
  says "$WORK/$1/console" "$2" && says "$WORK/$1/console" "Nothing was changed on any disk." &&
    says "$WORK/screen.txt" "press a key to start it now" && vm_press "$1" spc &&
    vm_await_reboot "$1"
}

# writes_in_order NAME: the packages as they were in the folder, and the script behind them.
writes_in_order() {
  grep -aoE 'Writing [^,]+' "$WORK/$1/console" | cut -c 9- >"$WORK/written"
  { printf '%s\n' "${names[@]}" | tac && echo autorun.scr; } | diff - "$WORK/written"
}

# Another disk, which the loader of another volume starts, comes before it.
a_disk_is_installed_with_what_is_on_it_and_starts_then() {
  demo_packages
  make_own_disk "$WORK/other.img" 48 0BADCAFE && make_own_disk "$(disk_of pc)" 64 1234ABCD &&
    start_own pc 1234ABCD "ide:$WORK/other.img" "virtio:$(disk_of pc)" || return 1
  vm_await_reboot pc && never_said pc "Announcing" && is_untouched "$WORK/other.img" &&
    is_whole "$(disk_of pc)" && writes_in_order pc &&
    cmp "$WORK/packages/autorun.scr" "$(disk_of pc).files/autorun.scr" &&
    says "$WORK/pc/console" "Disk vda, 64 MB: this PC was started from it, from the volume 1234-ABCD." &&
    says "$WORK/pc/console" "Disk vda, 64 MB: everything on it is erased; one partition" || return 1
  start_pc pc boot=disk disk="virtio:$(disk_of pc)" && vm_await pc "packages that Omniset installed"
}

of_two_disks_that_are_alike_neither_is_touched() {
  demo_packages
  make_own_disk "$(disk_of pc)" 64 1234ABCD && cp "$(disk_of pc)" "$WORK/copy.img" &&
    cp "$(disk_of pc)" "$WORK/copy.img.before" || return 1
  start_own pc 1234ABCD "ide:$(disk_of pc)" "ahci:$WORK/copy.img" || return 1
  stops_with pc "disks sda and sdb" && is_untouched "$(disk_of pc)" &&
    is_untouched "$WORK/copy.img"
}

packages_larger_than_the_memory_erase_nothing() {
  large_package 30000000
  make_own_disk "$(disk_of pc)" 64 1234ABCD && start_own pc 1234ABCD "ide:$(disk_of pc)" || return 1
  stops_with pc "do not fit into the memory of this PC" && is_untouched "$(disk_of pc)"
}

run_tests a_disk_is_installed_with_what_is_on_it_and_starts_then \
  of_two_disks_that_are_alike_neither_is_touched \
  packages_larger_than_the_memory_erase_nothing
