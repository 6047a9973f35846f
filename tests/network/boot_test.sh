#!/usr/bin/env bash
# The boot service over a real network: TFTP clients of other makers fetch the boot images.
# shellcheck source=tests/network/lib.sh
. "$(dirname "$0")/lib.sh"

SERVER=192.168.88.1

# What each request of a boot gets, in the order of the requests.
SEQUENCE=("$BOOT_IMAGES/125" "$TOP/resources/images/126" "$BOOT_IMAGES/120" "$BOOT_IMAGES/121")
FILE_NAMES=(/image pxelinux.cfg/default linux initrd.rgz)

client() { ip netns exec "$netns2" "$@"; }

# Each fetches the file of a name and gives it another here.
fetch_by_curl() { client curl -sS -o "$2" "tftp://$SERVER/$1"; }
fetch_by_curl_in_large_blocks() { client curl -sS --tftp-blksize 1428 -o "$2" "tftp://$SERVER/$1"; }
fetch_by_curl_without_options() { client curl -sS --tftp-no-options -o "$2" "tftp://$SERVER/$1"; }
fetch_by_atftp() { client atftp --get --remote-file "$1" --local-file "$2" $SERVER; }
fetch_by_atftp_with_size() {
  client atftp --option "tsize 0" --get --remote-file "$1" --local-file "$2" $SERVER
}
fetch_by_tftp_hpa() { client tftp -m binary $SERVER -c get "$1" "$2"; }

# gets FETCH NUMBER...: fetches these images of the sequence.
gets() {
  local fetch=$1 number
  shift
  for number in "$@"; do
    "$fetch" "${FILE_NAMES[number]}" "$WORK/fetched" && cmp "$WORK/fetched" "${SEQUENCE[number]}" ||
      { say "$fetch did not get ${FILE_NAMES[number]}"; return 1; }
    rm "$WORK/fetched"
  done
}

# boot_by FETCH: asks, and fetches the whole sequence.
boot_by() { ask_boot && gets "$1" 0 1 2 3; }

sequence_arrives_by() {
  start_boot && boot_by "$1" && wait_for "$WORK/boot.out" "all images" 5
}
the_sequence_arrives_by_curl() { sequence_arrives_by fetch_by_curl; }
the_sequence_arrives_by_curl_that_wants_large_blocks() {
  sequence_arrives_by fetch_by_curl_in_large_blocks
}
the_sequence_arrives_by_curl_without_options() { sequence_arrives_by fetch_by_curl_without_options; }
the_sequence_arrives_by_atftp() { sequence_arrives_by fetch_by_atftp; }
the_sequence_arrives_by_atftp_that_asks_for_sizes() { sequence_arrives_by fetch_by_atftp_with_size; }
the_sequence_arrives_by_tftp_hpa() { sequence_arrives_by fetch_by_tftp_hpa; }

boots_follow_each_other() {
  start_boot && boot_by fetch_by_curl && boot_by fetch_by_tftp_hpa && boot_by fetch_by_atftp
}

an_etherboot_client_gets_one_image_by_each_client() {
  local fetch
  etherboot_image >"$WORK/expected"
  start_boot || return
  for fetch in fetch_by_curl fetch_by_atftp fetch_by_tftp_hpa; do
    ask_boot Etherboot-5.4 && "$fetch" any "$WORK/fetched" && cmp "$WORK/fetched" "$WORK/expected" ||
      return
    rm "$WORK/fetched"
  done
}

replies_have_the_addresses_and_the_boot_file() {
  start_boot && ask_boot Etherboot-5.4 &&
    says "$WORK/reply" "bytes 241 client $BOOT_CLIENT server $SERVER file /tftpboot/own.nbi options ff" &&
    ask_boot pxeclient:Arch:00000 &&
    says "$WORK/reply" "bytes 245 client $BOOT_CLIENT server $SERVER file /image options 0d 02 00 16 ff"
}

other_clients_get_no_reply() {
  start_boot && status 1 ask_boot "MSFT 5.0" 2
}

# A PC that was reset asks while its earlier boot is waited for.
a_client_that_asks_again_is_answered_again() {
  start_boot && ask_boot && ask_boot && ask_boot && boot_by fetch_by_curl
}

# json_step STEP [MORE]: a line of the output; MORE is what it holds behind the client.
json_step() {
  say "{\"event\":\"boot\",\"step\":\"$1\",\"mac\":\"$MAC_TARGET\"${2:+,$2}}"
}

json_of_a_boot() {
  local names=("boot program" "boot configuration" kernel "RAM disk") number image
  json_step answered "\"address\":\"$BOOT_CLIENT\""
  for number in 0 1 2 3; do
    image="\"image\":$(basename "${SEQUENCE[number]}"),\"name\":\"${names[number]}\""
    json_step requested "$image,\"file\":\"${FILE_NAMES[number]}\""
    json_step sent "$image,\"bytes\":$(stat -c %s "${SEQUENCE[number]}")"
  done
  json_step "done"
}

with_json_each_step_is_a_line() {
  start_boot --json && boot_by fetch_by_curl && wait_for "$WORK/boot.out" '"done"' 5 || return
  json_of_a_boot | diff - "$WORK/boot.out"
}

# Ctrl-C; the service ends sooner than it would give up a client that is silent.
ends_on_request() {
  kill -INT "$service"
  ends_with 0 "$service" 4
}

the_service_ends_on_request_while_nobody_asks() { start_boot && ends_on_request; }

the_service_ends_on_request_while_a_client_is_awaited() {
  start_boot && ask_boot && ends_on_request
}

# Asks for an image and acknowledges nothing: the service is in the middle of it for five seconds.
begin_image() { client bash -c "printf '\0\1$1\0octet\0' >/dev/udp/$SERVER/69"; }

the_service_ends_on_request_in_the_middle_of_the_kernel() {
  start_boot && ask_boot && gets fetch_by_curl 0 1 || return
  begin_image linux
  wait_for "$WORK/boot.out" "asked for 'linux'" 5 && ends_on_request || return
  if grep -E "kernel sent|fell silent" "$WORK/boot.out"; then return 1; fi
}

the_service_ends_when_nobody_reads_its_output() {
  mkfifo "$WORK/boot.out"
  head -n 1 "$WORK/boot.out" >"$WORK/first" &
  local reader=$!
  pids+=("$reader")
  start_boot && ask_boot && ends_with 0 "$reader" 5 && says "$WORK/first" "asked to boot" || return
  begin_image /image
  ends_with 1 "$service" 4 && says "$WORK/boot.err" "could not be written"
}

a_second_service_is_told_that_the_ports_are_in_use() {
  start_boot || return
  ip netns exec "$netns1" timeout 10 "$CLI" boot --client $BOOT_CLIENT --interface "$netns_if1" \
    >"$WORK/out" 2>"$WORK/err"
  local got=$?
  [ $got -eq 1 ] || { say "exit status $got"; return 1; }
  says "$WORK/err" "needs the UDP ports 67 and 69" && boot_by fetch_by_curl
}

# Takes the port of the images for a while: this client may choose where its requests come from.
take_tftp_port() {
  ip netns exec "$netns1" tftp -R 69:69 $BOOT_CLIENT -c get nothing "$WORK/nothing" \
    >/dev/null 2>&1 </dev/null &
  pids+=($!)
  wait_for_port 69 5
}

an_installation_tells_the_steps_of_boots_and_once_that_the_service_failed() {
  demo_packages
  start_installer --packages "$WORK/packages" --select-all --all --wait 30 --boot $BOOT_CLIENT --json
  wait_for "$WORK/err" "Waiting up to" 10 && take_tftp_port && ask_boot || return
  wait_for "$WORK/err" "Routers that have booted already are still installed." 5 || return
  kill -INT "$installer"
  ends_with 1 "$installer" 4 || return
  json_of_a_boot | head -n 1 | diff - "$WORK/out" || return
  [ "$(grep -c "needs the UDP ports" "$WORK/err")" -eq 1 ] || { cat "$WORK/err"; return 1; }
}

after_any_datagrams_the_service_goes_on() {
  start_boot && ask_boot || return
  local size
  for size in 0 1 2 3 4 100 240 1264 1400 9000; do
    # Whatever begins with 0 and 1 would be taken for a request of an image.
    { printf '\377' && cat /dev/urandom; } 2>/dev/null | head -c "$size" >"$WORK/noise"
    for port in 67 69; do
      client bash -c "cat '$WORK/noise' >/dev/udp/$SERVER/$port" 2>/dev/null
    done
  done
  kill -0 "$service" && ask_boot && ask_boot && boot_by fetch_by_curl
}

mapfile -t tests < <(declare -F | sed -n 's/^declare -f \(the_sequence_.*\)$/\1/p')
run_tests "${tests[@]}" boots_follow_each_other an_etherboot_client_gets_one_image_by_each_client \
  replies_have_the_addresses_and_the_boot_file other_clients_get_no_reply \
  a_client_that_asks_again_is_answered_again with_json_each_step_is_a_line \
  the_service_ends_on_request_while_nobody_asks \
  the_service_ends_on_request_while_a_client_is_awaited \
  the_service_ends_on_request_in_the_middle_of_the_kernel \
  the_service_ends_when_nobody_reads_its_output a_second_service_is_told_that_the_ports_are_in_use \
  an_installation_tells_the_steps_of_boots_and_once_that_the_service_failed \
  after_any_datagrams_the_service_goes_on
