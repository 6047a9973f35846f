# shellcheck shell=bash
# The side of a window test that is outside Windows: does what the driver program asks for
# (tests/win/driver/host_channel.h). To be sourced after tests/network/lib.sh and scripts/lib/xvfb.sh;
# targets live in the second network namespace, their stores and logs in $WORK.
#
#   host_serve FOLDER PID   answers the requests in the folder until the process has ended
#
# The requests:
#
#   start NAME ARGUMENT...          starts omniset-target; its store is $WORK/NAME
#   stop NAME | stop-all            ends it, or all
#   freeze NAME | thaw NAME         it falls silent as if its cable were pulled, or goes on
#   wait NAME SECONDS               waits until it has ended by itself, with success
#   same FOLDER STORE FILE...       both in $WORK: the store holds exactly these files and the script
#   picture NAME                    a picture of the screen, $HOST_PICTURES/NAME.png
#   say TEXT                        prints the text

declare -A host_targets=()

# What is said goes where this script's own output goes, not into the answers.
exec {host_voice}>&1

host_stop_all() {
  local name
  for name in "${!host_targets[@]}"; do host_stop "$name"; done
}

host_start() {
  local name=$1
  shift
  start_target "$name" "$@"
  host_targets[$name]=$target
  pids=()  # it is looked after here
}

# A frozen target takes no notice of its end until it goes on.
host_stop() {
  local pid=${host_targets[$1]:-}
  [ -n "$pid" ] || return 0
  unset "host_targets[$1]"
  kill "$pid" 2>/dev/null || return 0
  kill -CONT "$pid" 2>/dev/null
  wait "$pid" 2>/dev/null
  return 0
}

host_signal() { # signal name
  kill "-$1" "${host_targets[$2]:-none}"
}

host_wait() { # name seconds
  local pid=${host_targets[$1]:-} left=$(($2 * 50))
  [ -n "$pid" ] || { say "there is no target $1"; return 1; }
  while kill -0 "$pid" 2>/dev/null; do
    [ $((left -= 1)) -gt 0 ] || { tail -n 5 "$WORK/$1.log"; return 1; }
    sleep 0.02
  done
  unset "host_targets[$1]"
  wait "$pid"
}

host_same() { # folder store file...
  local folder=$1 store=$2
  shift 2
  same "$WORK/$folder" "$WORK/$store" "$@"
}

host_picture() {
  mkdir -p "$HOST_PICTURES" && xvfb_picture "$HOST_PICTURES/$1.png"
}

host_answer() { # word...
  local word=$1
  shift
  case $word in
    start) host_start "$@" ;;
    stop) host_stop "$@" ;;
    stop-all) host_stop_all ;;
    freeze) host_signal STOP "$@" ;;
    thaw) host_signal CONT "$@" ;;
    wait) host_wait "$@" ;;
    same) host_same "$@" ;;
    picture) host_picture "$@" ;;
    say) printf '%s\n' "$*" >&"$host_voice" ;;
    *) echo "unknown request: $word"; return 2 ;;
  esac
}

host_serve() {
  local folder=$1 program=$2 next=1 words status
  mkdir -p "$folder"
  while kill -0 "$program" 2>/dev/null; do
    if [ ! -e "$folder/request-$next" ]; then
      sleep 0.02
      continue
    fi
    mapfile -t words <"$folder/request-$next"
    status=0
    host_answer "${words[@]}" >"$folder/output" 2>&1 || status=$?
    { echo $status; cat "$folder/output"; } >"$folder/part-$next"
    mv "$folder/part-$next" "$folder/answer-$next"
    next=$((next + 1))
  done
  host_stop_all
}
