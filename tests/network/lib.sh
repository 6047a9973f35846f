# Sourced by the network tests: two namespaces joined by a cable, targets in the second, the command
# line in the first. Each test is a function; a failed expectation ends it.
# shellcheck shell=bash

set -u
# shellcheck source=scripts/lib/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib/setup.sh"
# shellcheck source=scripts/lib/netns.sh
. "$TOP/scripts/lib/netns.sh"
# shellcheck source=tests/run_tests.sh
. "$TOP/tests/run_tests.sh"

MAC_INSTALLER=02:00:00:00:00:01
MAC_TARGET=02:00:00:00:00:02
BIN=$BUILD/linux
CLI=$BIN/cli/omniset-cli
MAKE_BDL=$BIN/tests/tools/make-bdl

WORK=$(mktemp -d)
pids=()
# Functions of other files that end what they have started.
stoppers=()

# The network that the tests of a file work in.
make_network() {
  netns_make $MAC_INSTALLER $MAC_TARGET
}

before_tests() {
  make_network || die "The network namespaces could not be made."
}

after_each_test() { stop_all; }

cleanup() {
  stop_all
  netns_remove
  rm -rf "$WORK"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

stop_all() {
  local pid stopper
  for stopper in ${stoppers[@]+"${stoppers[@]}"}; do "$stopper"; done
  for pid in ${pids[@]+"${pids[@]}"}; do
    kill "$pid" 2>/dev/null || continue
    has_ended "$pid" 10 || kill -KILL "$pid"
    wait "$pid" 2>/dev/null
  done
  pids=()
}

# has_ended PROCESS SECONDS: the process, which this shell has started, ends within that time.
has_ended() {
  local left=$(($2 * 20))
  while kill -0 "$1" 2>/dev/null; do
    [ $((left -= 1)) -gt 0 ] || return 1
    sleep 0.05
  done
}

# start_target NAME [ARGUMENT...]: a target whose store and log are $WORK/NAME and $WORK/NAME.log.
start_target() {
  local name=$1
  shift
  ip netns exec "$netns2" "$BIN/target/omniset-target" --interface "$netns_if2" \
    --store "$WORK/$name" "$@" >"$WORK/$name.log" 2>&1 </dev/null &
  target=$!
  pids+=("$target")
}

# cli ARGUMENT...: the command line in its namespace; its output is in $WORK/out and $WORK/err, its
# temporary files in $WORK/tmp.
cli() {
  mkdir -p "$WORK/tmp"
  TMPDIR=$WORK/tmp ip netns exec "$netns1" "$CLI" "$@" >"$WORK/out" 2>"$WORK/err"
}

install() { cli install --interface "$netns_if1" "$@"; }

# A folder of packages that depend on each other; sets `names` to their files.
demo_packages() {
  "$MAKE_BDL" "$WORK/packages" --demo >/dev/null
  mapfile -t names < <(cd "$WORK/packages" && ls)
}

# start_installer ARGUMENT...: the same beside the test; sets `installer` to its process.
start_installer() {
  mkdir -p "$WORK/tmp"
  TMPDIR=$WORK/tmp ip netns exec "$netns1" "$CLI" install --interface "$netns_if1" "$@" \
    >"$WORK/out" 2>"$WORK/err" &
  installer=$!
  pids+=("$installer")
}

# The address that PCs get while they boot, and where their images are.
BOOT_CLIENT=192.168.88.2
BOOT_IMAGES=${OMNISET_IMAGES:-$BIN/images}

# start_boot [ARGUMENT...]: the boot service beside the test; sets `service` to its process.
start_boot() {
  ip netns exec "$netns1" "$CLI" boot --client $BOOT_CLIENT --interface "$netns_if1" "$@" \
    >"$WORK/boot.out" 2>"$WORK/boot.err" </dev/null &
  service=$!
  pids+=("$service")
  wait_for "$WORK/boot.err" "Answering" 10
}

# ask_boot [VENDOR-CLASS [SECONDS]]: asks as boot firmware does, and waits so long for the reply, which
# is in $WORK/reply.
ask_boot() {
  ip netns exec "$netns2" "$BIN/tests/tools/ask-boot" "$netns_if2" $MAC_TARGET "$@" >"$WORK/reply"
}

# The one image that an Etherboot client gets.
etherboot_image() {
  cat "$BOOT_IMAGES/127"
  tail -c +3025 "$BOOT_IMAGES/120"
  cat "$BOOT_IMAGES/121"
}

# status WANTED COMMAND...: the command ends with that exit status.
status() {
  local wanted=$1 got
  shift
  "$@"
  got=$?
  [ $got -eq "$wanted" ] && return 0
  say "expected exit status $wanted, got $got of: $*"
  tail -n 5 "$WORK/out" "$WORK/err"
  return 1
}

# says FILE TEXT: the file holds the text.
says() {
  grep -qF -- "$2" "$1" && return 0
  say "expected \"$2\" in $1, which says:"
  tail -n 15 "$1"
  return 1
}

# same FOLDER STORE NAME...: the store holds exactly these files and the script.
same() {
  local folder=$1 store=$2 name
  shift 2
  for name in "$@"; do
    cmp "$folder/$name" "$store/$name" || return 1
  done
  [ -e "$store/autorun.scr" ] || { say "no script in $store"; return 1; }
  local held
  held=$(find "$store" -maxdepth 1 -type f ! -name '.*' | wc -l)
  [ "$held" -eq $(($# + 1)) ] || { say "$store holds other files too:"; ls "$store"; return 1; }
}

no_temporary_files() {
  [ -z "$(ls "$WORK/tmp")" ] && return 0
  say "temporary files are left:"
  ls "$WORK/tmp"
  return 1
}

# ends_with STATUS PROCESS SECONDS: the process ends with that exit status, and within that time.
ends_with() {
  local wanted=$1 got
  has_ended "$2" "$3" || { say "process $2 still runs after $3 seconds"; return 1; }
  wait "$2"
  got=$?
  [ $got -eq "$wanted" ] || { say "expected exit status $wanted, got $got"; return 1; }
}

# wait_for_port PORT SECONDS: until somebody in the command line's namespace has the UDP port.
wait_for_port() {
  local left=$(($2 * 20))
  until [ -n "$(ip netns exec "$netns1" ss -Huln "sport = :$1")" ]; do
    [ $((left -= 1)) -gt 0 ] || { say "nobody has port $1"; return 1; }
    sleep 0.05
  done
}

# wait_for FILE TEXT SECONDS
wait_for() {
  local left=$(($3 * 20))
  until grep -qsF -- "$2" "$1"; do
    [ $((left -= 1)) -gt 0 ] || { says "$1" "$2"; return 1; }
    sleep 0.05
  done
}
