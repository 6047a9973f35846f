#!/usr/bin/env bash
# The program of the RAM disk, started where it must not partition anything. Whoever runs it here may
# not open a disk.
# shellcheck source=tests/vm/lib.sh
. "$(dirname "$0")/lib.sh"

AGENT=$BUILD/linux/payload/agent/target/pc/omniset_init

# refuses [COMMAND...]: it ends at once when it is started, by the command that is named, and says why.
refuses() {
  cp "$AGENT" "$WORK/init"
  chmod 755 "$WORK" "$WORK/init"
  status 1 timeout 10 "$@" setpriv --reuid=65534 --regid=65534 --clear-groups --bounding-set=-all \
    --no-new-privs "$WORK/init" >/dev/null 2>"$WORK/err" &&
    says "$WORK/err" "starts only from the RAM disk"
}

it_does_not_run_beside_other_programs() { refuses; }
it_does_not_run_as_the_first_process_of_another_system() { refuses unshare --pid --fork; }

run_tests it_does_not_run_beside_other_programs it_does_not_run_as_the_first_process_of_another_system
