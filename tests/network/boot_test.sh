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

# boot_by FETCH: asks, and fetches the whole sequence.
boot_by() {
  local number
  ask_boot || return
  for number in 0 1 2 3; do
    "$1" "${FILE_NAMES[number]}" "$WORK/fetched" && cmp "$WORK/fetched" "${SEQUENCE[number]}" ||
      { say "$1 did not get ${FILE_NAMES[number]}"; return 1; }
    rm "$WORK/fetched"
  done
}

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
  start_boot && status 1 ask_boot "MSFT 5.0"
}

# A PC that was reset asks while its earlier boot is waited for.
a_client_that_asks_again_is_answered_again() {
  start_boot && ask_boot && ask_boot && ask_boot && boot_by fetch_by_curl
}

the_service_ends_on_request() {
  local got
  start_boot && ask_boot || return
  kill -INT "$service"
  wait "$service"
  got=$?
  [ $got -eq 0 ] || { say "exit status $got"; return 1; }
}

after_any_datagrams_the_service_goes_on() {
  start_boot && ask_boot || return
  local size
  for size in 0 1 2 3 4 100 240 1264 1400 9000; do
    head -c "$size" /dev/urandom >"$WORK/noise"
    for port in 67 69; do
      client bash -c "cat '$WORK/noise' >/dev/udp/$SERVER/$port" 2>/dev/null
    done
  done
  kill -0 "$service" && ask_boot && ask_boot && boot_by fetch_by_curl
}

mapfile -t tests < <(declare -F | sed -n 's/^declare -f \(the_sequence_.*\)$/\1/p')
run_tests "${tests[@]}" boots_follow_each_other an_etherboot_client_gets_one_image_by_each_client \
  replies_have_the_addresses_and_the_boot_file other_clients_get_no_reply \
  a_client_that_asks_again_is_answered_again the_service_ends_on_request \
  after_any_datagrams_the_service_goes_on
