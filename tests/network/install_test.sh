#!/usr/bin/env bash
# Installations over a real network, as an operator starts them.
# shellcheck source=tests/network/lib.sh
. "$(dirname "$0")/lib.sh"

one_router_is_installed_and_rebooted() {
  demo_packages
  start_target store --label "rack 1"
  status 0 install --packages "$WORK/packages" --select-all --first 1 --wait 10 \
    --address 192.168.88.2/24 --gateway 192.168.88.1 --reboot || return 1
  same "$WORK/packages" "$WORK/store" "${names[@]}" || return 1
  says "$WORK/store/autorun.scr" "mac-address=$MAC_TARGET" || return 1
  says "$WORK/store/autorun.scr" "address=192.168.88.2/24" || return 1
  says "$WORK/store/autorun.scr" "/ip route add gateway=192.168.88.1" || return 1
  wait "$target" || return 1
  says "$WORK/store.log" "Rebooting." && no_temporary_files
}

without_reboot_the_target_waits_and_a_key_ends_it() {
  demo_packages
  mkfifo "$WORK/keys"
  ip netns exec "$netns2" "$BIN/target/omniset-target" --interface "$netns_if2" \
    --store "$WORK/store" >"$WORK/store.log" 2>&1 <"$WORK/keys" &
  target=$!
  pids+=("$target")
  exec 8>"$WORK/keys"
  status 0 install --packages "$WORK/packages" --select-all --router $MAC_TARGET --wait 10
  local good=$?
  printf x >&8
  exec 8>&-
  [ $good -eq 0 ] && wait "$target" && same "$WORK/packages" "$WORK/store" "${names[@]}" &&
    says "$WORK/store.log" "Rebooting"
}

ten_routers_are_installed_at_once() {
  demo_packages
  start_target stores --count 10
  status 0 install --packages "$WORK/packages" --select-all --all --wait 4 --reboot --json ||
    return 1
  local store stores=0
  for store in "$WORK"/stores/*; do
    same "$WORK/packages" "$store" "${names[@]}" || return 1
    stores=$((stores + 1))
  done
  [ $stores -eq 10 ] && [ "$(grep -c '"event":"result"' "$WORK/out")" -eq 10 ] &&
    [ "$(grep -c '"ok":true' "$WORK/out")" -eq 10 ] && wait "$target"
}

json_lines_begin_with_the_router_and_end_with_its_result() {
  demo_packages
  start_target store --label 'rack "7"'
  status 0 install --packages "$WORK/packages" --select-all --first 1 --wait 10 --reboot --json ||
    return 1
  head -n 1 "$WORK/out" >"$WORK/first"
  tail -n 1 "$WORK/out" >"$WORK/last"
  says "$WORK/first" '"event":"router"' && says "$WORK/first" '"label":"rack \"7\""' &&
    says "$WORK/out" '"status":"Installing"' && says "$WORK/out" '"status":"Waiting reboot"' &&
    says "$WORK/last" '"event":"result"' && says "$WORK/last" '"ok":true' &&
    says "$WORK/last" "$MAC_TARGET"
}

routers_are_listed() {
  start_target store --label "in the list"
  status 0 cli routers --interface "$netns_if1" --seconds 2 || return 1
  says "$WORK/out" "$MAC_TARGET" && says "$WORK/out" "in the list"
}

no_router_within_the_wait_gives_status_3() {
  demo_packages
  status 3 install --packages "$WORK/packages" --select-all --all --wait 1
}

a_named_router_that_is_missing_fails() {
  demo_packages
  start_target store
  status 1 install --packages "$WORK/packages" --select-all --wait 4 --reboot --json \
    --router "$MAC_TARGET,02:00:00:00:00:99" || return 1
  says "$WORK/out" '"mac":"02:00:00:00:00:99","ok":false' ||
    grep -q '02:00:00:00:00:99.*"ok":false' "$WORK/out"
}

own_script_and_kept_configuration_arrive() {
  demo_packages
  printf '/system identity set name=rack\n' >"$WORK/own.rsc"
  start_target store
  status 0 install --packages "$WORK/packages" --select-all --first 1 --wait 10 --reboot \
    --script "$WORK/own.rsc" || return 1
  cmp "$WORK/own.rsc" "$WORK/store/autorun.scr" || return 1
  wait "$target"
  start_target store
  status 0 install --packages "$WORK/packages" --select-all --first 1 --wait 10 --reboot \
    --keep-config || return 1
  [ ! -s "$WORK/store/autorun.scr" ] && says "$WORK/store.log" "keeping"
}

a_flood_of_foreign_datagrams_changes_nothing() {
  demo_packages
  start_target store
  ip netns exec "$netns2" "$BIN/tests/tools/flood" "$netns_if2" 60000 &
  local flood=$!
  pids+=("$flood")
  status 0 install --packages "$WORK/packages" --select-all --router $MAC_TARGET --wait 20 \
    --reboot || return 1
  same "$WORK/packages" "$WORK/store" "${names[@]}"
}

a_second_installer_is_told_that_the_port_is_in_use() {
  demo_packages
  ip netns exec "$netns1" "$CLI" routers --interface "$netns_if1" --seconds 5 >/dev/null 2>&1 &
  pids+=($!)
  wait_for_port 5000 10 || return
  status 1 install --packages "$WORK/packages" --select-all --all --wait 1 || return 1
  says "$WORK/err" "5000"
}

run_tests one_router_is_installed_and_rebooted without_reboot_the_target_waits_and_a_key_ends_it \
  ten_routers_are_installed_at_once json_lines_begin_with_the_router_and_end_with_its_result \
  routers_are_listed no_router_within_the_wait_gives_status_3 a_named_router_that_is_missing_fails \
  own_script_and_kept_configuration_arrive a_flood_of_foreign_datagrams_changes_nothing \
  a_second_installer_is_told_that_the_port_is_in_use
