# shellcheck shell=bash
# Sourced by test scripts, whose tests are functions that succeed or fail.
#
#   run_tests NAME...    runs each in an empty $WORK and prints the closing line; succeeds when all did

# Defined anew by scripts that have something to do then.
before_tests() { :; }
after_each_test() { :; }

run_tests() {
  local name started passed=0 failed=0
  before_tests || die "The tests cannot begin."
  for name in "$@"; do
    started=$SECONDS
    rm -rf "${WORK:?}"/*
    if "$name"; then
      passed=$((passed + 1))
      say "ok      $name ($((SECONDS - started)) s)"
    else
      failed=$((failed + 1))
      say "FAILED  $name"
    fi
    after_each_test
  done
  say "$passed passed, $failed failed"
  [ "$failed" -eq 0 ]
}
