#!/usr/bin/env bash
# Installations over a real network that are cut off in the middle, and what the next one finds.
# shellcheck source=tests/network/lib.sh
. "$(dirname "$0")/lib.sh"

# A package of many megabytes, so that there is time to disturb its transfer.
large_package() {
  "$MAKE_BDL" "$WORK/large" --name system --version 2.9.7 --kind f --description "Large" \
    --payload-bytes 60000000 --seed 1 >/dev/null
}

an_interrupted_installer_leaves_no_temporary_file() {
  large_package
  start_target store
  start_installer --packages "$WORK/large" --select-all --first 1
  wait_for "$WORK/store.log" "Receiving" 10 || return 1
  # Background jobs of a script ignore SIGINT unless the program handles it; SIGTERM ends alike.
  kill -INT "$installer"
  wait "$installer"
  local got=$?
  [ $got -eq 1 ] || { say "exit status $got"; return 1; }
  says "$WORK/err" "interrupted" && no_temporary_files
}

a_target_that_restarts_fails_and_is_installed_by_the_next_run() {
  large_package
  start_target store
  start_installer --packages "$WORK/large" --select-all --first 1 --reboot
  wait_for "$WORK/store.log" "Receiving" 10 || return 1
  kill "$target"
  wait "$target" 2>/dev/null
  start_target store
  wait "$installer"
  local got=$?
  [ $got -eq 1 ] || { say "exit status $got"; cat "$WORK/err"; return 1; }
  status 0 install --packages "$WORK/large" --select-all --first 1 --reboot --wait 15 || return 1
  same "$WORK/large" "$WORK/store" "$(ls "$WORK/large")" && no_temporary_files
}

a_killed_installer_leaves_the_target_free_for_the_next() {
  large_package
  start_target store
  start_installer --packages "$WORK/large" --select-all --first 1
  wait_for "$WORK/store.log" "Receiving" 10 || return 1
  kill -KILL "$installer"
  wait "$installer" 2>/dev/null
  status 0 install --packages "$WORK/large" --select-all --first 1 --reboot --wait 60 || return 1
  says "$WORK/store.log" "gone" && same "$WORK/large" "$WORK/store" "$(ls "$WORK/large")"
}

run_tests an_interrupted_installer_leaves_no_temporary_file \
  a_target_that_restarts_fails_and_is_installed_by_the_next_run \
  a_killed_installer_leaves_the_target_free_for_the_next
