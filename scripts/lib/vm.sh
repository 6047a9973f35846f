# shellcheck shell=bash
# Virtual PCs in the second of two network namespaces (scripts/lib/netns.sh, with its switch), which
# boot the installer system, or what is on their disk. To be sourced by bash scripts that run as root.
#
# Debian packages needed: qemu-system-x86 ipxe-qemu seabios.
#
#   vm_start NAME [SETTING...]   switches the PC on; the settings are listed at the function
#   vm_mac NAME [CARD]           prints the MAC address of its first card, or of another
#   vm_await NAME TEXT [SECONDS [TIMES]]
#                                waits until its serial console shows the text, once or so many times
#   vm_await_reboot NAME [SECONDS]
#                                waits until the PC reboots itself; it is off then
#   vm_reset NAME                presses its reset button; returns when the installer system is back
#   vm_off NAME, vm_off_all      cuts its power, or that of all; fit for a trap, at any moment
#   vm_press NAME KEY            presses a key of its keyboard, by the name that QEMU has for it
#   vm_type NAME TEXT            sends the text to its serial port
#   vm_picture NAME FILE         writes what its screen shows as FILE.png or FILE.ppm, as it ends
#   vm_screen NAME               prints the text that its screen shows, with what was scrolled off
#   vm_slow NAME DISK [BYTES]    its first disk (0), or another, writes no more than so many bytes a
#                                second from now on; without a number as fast as it can again
#   vm_leave_serial NAME         nobody reads its serial port any more; what it says stays unsaid
#
# Files of the PC NAME are in $WORK/NAME: what its serial port said since it was switched on is
# in `console`. A PC that is switched on again has the MAC addresses that it had.

# The kernel is the file 120 there, the RAM disk 121.
VM_IMAGES=${OMNISET_IMAGES:-$BUILD/linux/images}
# How long one waits for what a PC does, in seconds: emulated on a busy machine it takes its time.
VM_PATIENCE=90

VM_FIRST_WORDS="installer system"

# The ROMs wait long for an IPv6 router, unless somebody says that there is none.
VM_NO_ROUTER=$BUILD/linux/tests/tools/no-router

declare -A vm_pids=() vm_readers=() vm_numbers=()
vm_no_router=
vm_requests=0

# Settings, each of which may come more than once where that makes sense:
#
#   disk=BUS:FILE        a disk; BUS is ide, ahci or virtio, FILE its raw image or QEMU's name of it
#   disk=virtio,OPTION:FILE  such a disk that is write-protected (readonly), or has sectors of 4096
#                        bytes (sectors=4096)
#   floppy=FILE          the image of a floppy in its drive
#   card=MODEL           a network card on the switch; without any a virtio-net-pci
#   card=MODEL:unplugged one without a link
#   memory=MIB           32 unless told otherwise
#   append=TEXT          the kernel's command line, in place of that of a network boot
#   boot=disk            boots from the disk
#   boot=network         boots by its first card's ROM, from whoever answers on the switch
#   boot=order:LETTERS   boots from these in turn, as QEMU calls them (a: the floppy, c: the disk, n:
#                        the network)
#   trace=EVENT          what QEMU tells of this event is in `qemu.log`
vm_start() {
  local name=$1 setting memory=32 append=initrd=initrd.rgz kernel=yes roms= cards=() disks=() words=()
  shift
  vm_off "$name"
  for setting in "$@"; do
    case $setting in
      disk=*) disks+=("${setting#*=}") ;;
      floppy=*) words+=(-drive "if=floppy,format=raw,cache=unsafe,file=${setting#*=}") ;;
      card=*) cards+=("${setting#*=}") ;;
      memory=*) memory=${setting#*=} ;;
      append=*) append=${setting#*=} ;;
      boot=disk) kernel= ;;
      boot=network) kernel= roms=yes words+=(-boot order=n) ;;
      boot=order:*n*) kernel= roms=yes words+=(-boot "order=${setting#*:}") ;;
      boot=order:*) kernel= words+=(-boot "order=${setting#*:}") ;;
      trace=*) words+=(-trace "${setting#*=}") ;;
      *) echo "unknown setting of a virtual PC: $setting" >&2; return 2 ;;
    esac
  done
  [ ${#cards[@]} -gt 0 ] || cards=(virtio-net-pci)
  : "${vm_numbers[$name]:=$((${#vm_numbers[@]} + 1))}"
  [ -z "$roms" ] || vm_have_no_router
  [ -z "$kernel" ] || words+=(-kernel "$VM_IMAGES/120" -initrd "$VM_IMAGES/121" -append "$append")
  vm_add_disks ${disks[@]+"${disks[@]}"} || return
  vm_add_cards "$name" "${cards[@]}" || return
  vm_switch_on "$name" -m "$memory" "${words[@]}" && vm_unplug "$name" "${cards[@]}" || return
  [ -z "$roms" ] || vm_may_start_over "$name"
}

vm_have_no_router() {
  if [ -n "$vm_no_router" ] && kill -0 "$vm_no_router" 2>/dev/null; then return; fi
  ip netns exec "$netns2" "$VM_NO_ROUTER" "$netns_if2" >/dev/null 2>&1 </dev/null &
  vm_no_router=$!
}

# Adds to `words` of the caller. One AHCI controller has all disks of this kind, one on each port.
vm_add_disks() { # BUS[,OPTION]:FILE...
  local disk number=0 port=0 drive device
  for disk in "$@"; do
    drive=if=none,id=disk$number,format=raw,cache=unsafe device=drive=disk$number
    case ${disk%%:*} in
      ide) device="ide-hd,$device,bus=ide.$((number / 2)),unit=$((number % 2))" ;;
      ahci)
        [ $port -gt 0 ] || words+=(-device "ich9-ahci,id=ahci")
        device="ide-hd,$device,bus=ahci.$((port++))"
        ;;
      virtio) device="virtio-blk-pci,$device" ;;
      virtio,readonly) device="virtio-blk-pci,$device" drive+=,readonly=on ;;
      virtio,sectors=4096)
        device="virtio-blk-pci,$device,logical_block_size=4096,physical_block_size=4096"
        ;;
      *) echo "unknown disk of a virtual PC: $disk" >&2; return 2 ;;
    esac
    words+=(-drive "$drive,file=${disk#*:}" -device "$device")
    number=$((number + 1))
  done
}

# Adds to `words` of the caller. No card asks the network for something to boot, unless the caller
# wants the `roms`, and then the first only.
vm_add_cards() { # name card...
  local name=$1 card number=0 tap rom
  shift
  for card in "$@"; do
    tap=pc${vm_numbers[$name]}-$number
    netns_tap "$tap" || return
    rom=,romfile=
    [ -z "$roms" ] || [ $number -gt 0 ] || rom=
    words+=(-netdev "tap,id=net$number,ifname=$tap,script=no,downscript=no"
      -device "${card%:unplugged},netdev=net$number,mac=$(vm_mac "$name" "$number")$rom")
    number=$((number + 1))
  done
}

vm_unplug() { # name card...
  local name=$1 card number=0
  shift
  for card in "$@"; do
    [ "$card" = "${card%:unplugged}" ] ||
      vm_ask "$name" set_link "{\"name\":\"net$number\",\"up\":false}" || return
    number=$((number + 1))
  done
}

vm_mac() {
  printf '02:00:00:00:%02X:%02X\n' "$((${2:-0} + 1))" "${vm_numbers[$1]}"
}

# The monitor and the serial port are pairs of pipes, so that no client of a protocol is needed. When
# the guest reboots QEMU ends, and says why.
vm_switch_on() { # name argument...
  local name=$1 folder=$WORK/$1 pipe
  shift
  rm -rf "$folder"/{pipes,monitor,console}
  mkdir -p "$folder/pipes" &&
    mkfifo "$folder"/pipes/{monitor,serial}.{in,out} || return
  for pipe in monitor serial; do
    cat "$folder/pipes/$pipe.out" >"$folder/${pipe/serial/console}" &
    vm_readers[$name]+=" $!"
  done
  ip netns exec "$netns2" qemu-system-x86_64 -name "$name" -accel tcg -nodefaults -display none \
    -vga std -no-reboot -chardev "pipe,id=monitor,path=$folder/pipes/monitor" \
    -mon chardev=monitor,mode=control -chardev "pipe,id=serial,path=$folder/pipes/serial" \
    -serial chardev:serial "$@" >"$folder/qemu.log" 2>&1 </dev/null &
  vm_pids[$name]=$!
  vm_await_text "$name" monitor '"QMP"' 20 1 && vm_ask "$name" qmp_capabilities && return 0
  cat "$folder/qemu.log" >&2
  vm_off "$name"
  return 1
}

# vm_ask NAME COMMAND [ARGUMENTS]: a command to QEMU, with arguments in JSON; waits for the answer.
vm_ask() {
  local name=$1 request=$((vm_requests += 1)) monitor=$WORK/$1/monitor
  vm_send "$name" monitor \
    "{\"execute\":\"$2\",\"arguments\":${3:-{\}},\"id\":$request}"$'\n' &&
    vm_await_text "$name" monitor "\"id\": $request" 20 1 || return
  ! grep -F "\"id\": $request" "$monitor" | grep -F '"error"' >&2
}

# Opened for both directions, because to open a pipe just for writing waits for a reader.
vm_send() { # name pipe text
  vm_is_on "$1" || { echo "the PC $1 is off" >&2; return 1; }
  printf '%s' "$3" 1<>"$WORK/$1/pipes/$2.in"
}

vm_is_on() {
  [ -n "${vm_pids[$1]:-}" ] && kill -0 "${vm_pids[$1]}" 2>/dev/null
}

# What a PC that went off still had to say is read to its end.
vm_await_text() { # name file text seconds times
  local limit=$((SECONDS + $4)) last=
  while ! vm_says "$1" "$2" "$3" "$5"; do
    [ -z "$last" ] && [ $SECONDS -lt "$limit" ] || return 1
    if vm_is_on "$1"; then
      sleep 0.05
    else
      last=yes
      vm_reap "$1"
    fi
  done
}

vm_says() { # name file text times
  local times
  times=$(grep -aFsc -- "$3" "$WORK/$1/$2")
  [ "${times:-0}" -ge "$4" ]
}

vm_await() {
  vm_await_text "$1" console "$2" "${3:-$VM_PATIENCE}" "${4:-1}" && return 0
  echo "the console of $1 does not show \"$2\"; it ends with:"
  tail -n 15 "$WORK/$1/console"
  return 1
}

vm_await_reboot() {
  vm_await_text "$1" monitor '"SHUTDOWN", "data": {"guest": true, "reason": "guest-reset"}' \
    "${2:-$VM_PATIENCE}" 1 || {
    echo "the PC $1 does not reboot; its console ends with:"
    tail -n 15 "$WORK/$1/console"
    return 1
  }
  vm_off "$1"
}

# QEMU ends at a reboot, but not at this one, nor at those by which the firmware completes it: these
# are over when the installer system speaks again.
vm_reset() {
  local starts
  starts=$(grep -aFc "$VM_FIRST_WORDS" "$WORK/$1/console")
  vm_ask "$1" set-action '{"reboot":"reset"}' && vm_ask "$1" system_reset &&
    vm_await "$1" "$VM_FIRST_WORDS" "$VM_PATIENCE" $((starts + 1)) &&
    vm_ask "$1" set-action '{"reboot":"shutdown"}'
}

# Until the installer system is there, a PC that boots over the network may start over, as one does
# that its network failed: on a busy machine an answer may come too late for it.
vm_may_start_over() { # name
  local pid=${vm_pids[$1]} folder=$WORK/$1
  vm_ask "$1" set-action '{"reboot":"reset"}' || return
  {
    until grep -aFq "$VM_FIRST_WORDS" "$folder/console"; do
      kill -0 "$pid" 2>/dev/null || exit
      sleep 0.1
    done
    printf '%s\n' '{"execute":"set-action","arguments":{"reboot":"shutdown"},"id":"loaded"}' \
      1<>"$folder/pipes/monitor.in"
  } >/dev/null 2>&1 </dev/null &
  vm_readers[$1]=" $!${vm_readers[$1]}"
}

vm_press() {
  vm_ask "$1" send-key "{\"keys\":[{\"type\":\"qcode\",\"data\":\"$2\"}]}"
}

vm_type() { vm_send "$1" serial "$2"; }

vm_picture() {
  vm_ask "$1" screendump "{\"filename\":\"$2\",\"format\":\"${2##*.}\"}"
}

# The text of the screen is in memory, each character before its colours.
vm_screen() {
  local memory=$WORK/$1/screen
  vm_ask "$1" pmemsave "{\"val\":$((0xB8000)),\"size\":32768,\"filename\":\"$memory\"}" &&
    od -An -v -w2 -c "$memory" | cut -c 4 | tr -d '\n' | fold -w 80 | sed 's/ *$//'
}

vm_slow() {
  vm_ask "$1" block_set_io_throttle "{\"device\":\"disk$2\",\"bps_wr\":${3:-0},
    \"bps\":0,\"bps_rd\":0,\"iops\":0,\"iops_rd\":0,\"iops_wr\":0}"
}

# What reads the serial port is stopped, and the pipe to it filled.
vm_leave_serial() {
  local reader=${vm_readers[$1]##* } size
  kill -STOP "$reader" || return
  until grep -q '^State:.T' "/proc/$reader/status"; do sleep 0.05; done
  for size in 4096 1; do
    ! dd if=/dev/zero of="$WORK/$1/pipes/serial.out" bs=$size oflag=nonblock conv=notrunc \
      2>/dev/null || return
  done
}

vm_off() {
  [ -z "${vm_pids[$1]:-}" ] || kill -KILL "${vm_pids[$1]}" 2>/dev/null
  vm_reap "$1"
}

vm_off_all() {
  local name
  for name in "${!vm_pids[@]}"; do vm_off "$name"; done
  if [ -n "$vm_no_router" ]; then
    kill "$vm_no_router" 2>/dev/null
    wait "$vm_no_router" 2>/dev/null
    vm_no_router=
  fi
}

# The readers end with what they read from; those that still wait for a writer get one, and one that
# was stopped goes on.
vm_reap() {
  local pid pipe
  for pipe in "$WORK/$1"/pipes/*.out; do
    [ ! -p "$pipe" ] || : <>"$pipe"
  done
  for pid in ${vm_readers[$1]:-}; do kill -CONT "$pid" 2>/dev/null; done
  for pid in ${vm_pids[$1]:-} ${vm_readers[$1]:-}; do wait "$pid" 2>/dev/null; done
  unset "vm_pids[$1]" "vm_readers[$1]"
}
