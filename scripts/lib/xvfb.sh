# shellcheck shell=bash
# A screen that nobody looks at, for programs that need one. To be sourced by bash scripts.
#
# Debian packages needed: xvfb imagemagick (and fonts-wine fonts-liberation for Wine's dialogs), for
# a window manager openbox.
#
#   xvfb_start [WIDTHxHEIGHT]   starts an X server of our own on a free display and sets DISPLAY
#   xvfb_manage                 starts a window manager there, for windows as people see them
#   xvfb_picture FILE           writes what the screen shows now as a picture
#   xvfb_stop                   ends that server and nothing else; fit for a trap, at any moment
#
# The server is reached through a socket file, so also from other network namespaces.

xvfb_pid=
xvfb_manager_pid=

xvfb_start() {
  local size=${1:-1280x1024} number tries
  xvfb_stop
  number=$(mktemp) || return
  Xvfb -displayfd 3 -screen 0 "${size}x24" -dpi 96 -nolisten tcp \
    3>"$number" >/dev/null 2>&1 </dev/null &
  xvfb_pid=$!
  for ((tries = 0; tries < 200; tries++)); do
    if [ -s "$number" ]; then
      DISPLAY=:$(cat "$number")
      export DISPLAY
      rm -f "$number"
      return 0
    fi
    kill -0 "$xvfb_pid" 2>/dev/null || break
    sleep 0.05
  done
  rm -f "$number"
  xvfb_stop
  echo "the X server Xvfb did not start" >&2
  return 1
}

xvfb_manage() {
  openbox --sm-disable >/dev/null 2>&1 </dev/null &
  xvfb_manager_pid=$!
}

xvfb_picture() {
  import -window root "$1"
}

xvfb_stop() {
  [ -n "$xvfb_pid" ] || return 0
  if [ -n "$xvfb_manager_pid" ]; then
    kill "$xvfb_manager_pid" 2>/dev/null && wait "$xvfb_manager_pid" 2>/dev/null
    xvfb_manager_pid=
  fi
  kill "$xvfb_pid" 2>/dev/null && wait "$xvfb_pid" 2>/dev/null
  xvfb_pid=
  unset DISPLAY
}
