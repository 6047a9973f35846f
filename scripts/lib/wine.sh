# shellcheck shell=bash
# Running Windows programs under Wine, without a screen or on one. To be sourced by bash scripts.
#
# Debian packages needed: wine wine64 (and g++-mingw-w64-x86-64-posix to build what is run).
#
#   wine_prefix [FOLDER [NAMESPACE]]   makes the prefix once, selects it and starts its server
#   wine_screen_prefix FOLDER [NAMESPACE [DPI]]
#                                      the same for programs that show themselves on $DISPLAY; a
#                                      prefix of its own, with 96 dots to the inch or as many
#   wine_run EXE [ARGUMENT...]         runs a program; prints what it wrote; returns its exit code
#   wine_stop                          ends the server of the selected prefix and all that runs in it
#
# The sockets of all programs of a prefix belong to the prefix's one server, and so to the network
# in which that server was started: a network namespace needs a prefix of its own.

wine_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
wine_programs=/usr/lib/wine
wine_folder=
wine_launcher=()
wine_display=

# How long a server stays after the last program, and how long a program may run, in seconds.
: "${WINE_SERVER_STAYS:=120}"
: "${WINE_TIMEOUT:=600}"

# A Wine program in the selected prefix and network. Whatever it starts and leaves running keeps its
# files open: so these are never a pipe of the caller's, and no lock of the caller's. In a locale
# without foreign letters Wine makes no files whose names have some.
wine_program() {
  ${wine_launcher[@]+"${wine_launcher[@]}"} \
    env LC_ALL=C.UTF-8 WINEPREFIX="$wine_folder" WINEARCH=win64 WINEDEBUG=-all \
    WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe=" \
    WINESERVER="$wine_programs/wineserver64" DISPLAY="$wine_display" "$@" </dev/null 9>&-
}

# A fresh prefix in a folder, whose programs need no X server. What Wine says of it is in FOLDER.log.
wine_make_prefix() {
  local wine_folder=$1 wine_launcher=() wine_display=
  rm -rf "$wine_folder" &&
    mkdir -p "$wine_folder" &&
    wine_program "$wine_programs/wine64" wineboot -i >>"$wine_folder.log" 2>&1 &&
    wine_program "$wine_programs/wine64" reg add 'HKCU\Software\Wine\Drivers' \
      /v Graphics /d null /f >>"$wine_folder.log" 2>&1 &&
    wine_program "$wine_programs/wineserver64" -w >>"$wine_folder.log" 2>&1 &&
    touch "$wine_folder/.complete"
}

# Makes the prefix if it is not there, by linking the files of the common one under build/, and
# starts its server, in the network namespace if one is named.
wine_prefix() {
  local common=$wine_root/build/wine-prefix
  local folder=${1:-$common} namespace=${2:-}
  if [ ! -x "$wine_programs/wine64" ]; then
    echo "wine64 is missing: install the Debian packages wine and wine64" >&2
    return 1
  fi
  mkdir -p "$wine_root/build" || return
  # Several scripts may come here at once; one makes the prefix.
  (
    flock 9
    if [ ! -e "$common/.complete" ]; then
      # Wine's first start on a machine can fail where a second one does not.
      : >"$common.log"
      wine_make_prefix "$common" || wine_make_prefix "$common"
    fi
  ) 9>"$common.lock" || {
    echo "cannot make the Wine prefix $common; Wine says:" >&2
    tail -n 20 "$common.log" >&2
    return 1
  }
  if [ ! -e "$folder/.complete" ]; then
    wine_copy_prefix "$common" "$folder" || return
  fi
  wine_folder=$(cd "$folder" && pwd) || return
  wine_launcher=()
  wine_display=
  if [ -n "$namespace" ]; then wine_launcher=(ip netns exec "$namespace"); fi
  # Says no when one runs already; that one is as good.
  wine_program "$wine_programs/wineserver64" -p"$WINE_SERVER_STAYS" >/dev/null 2>&1 || true
}

# The files are linked, which costs no time and no room; the registry, which is written, is copied.
wine_copy_prefix() {
  local from=$1 to=$2
  mkdir -p "$(dirname "$to")" && rm -rf "$to" && cp -al "$from" "$to" &&
    rm -f "$to"/*.reg && cp -p "$from"/*.reg "$to"/
}

# The server is started anew: the desktop of one that runs already would stay without a screen.
wine_screen_prefix() {
  local folder=$1 namespace=${2:-} dpi=${3:-96} settings
  : "${DISPLAY:?no screen; see xvfb_start}"
  wine_prefix "$folder" "$namespace" || return
  settings=$wine_folder/drive_c/screen.reg
  wine_screen_settings "$dpi" >"$settings" || return
  if ! wine_program "$wine_programs/wine64" regedit /S 'C:\screen.reg' >/dev/null 2>&1; then
    echo "cannot prepare the Wine prefix $folder for a screen" >&2
    return 1
  fi
  wine_stop
  wine_prefix "$folder" "$namespace" || return
  wine_display=$DISPLAY
}

# Without a window manager Wine itself draws the captions and moves the focus. Drive Z, the whole of
# this computer's files, is no disk that a program could take for its own.
wine_screen_settings() {
  local dpi=$1 managed=N
  if [ -n "${xvfb_manager_pid:-}" ]; then managed=Y; fi
  cat <<SETTINGS
REGEDIT4

[HKEY_CURRENT_USER\\Software\\Wine\\Drivers]
"Graphics"="x11"

[HKEY_CURRENT_USER\\Software\\Wine\\X11 Driver]
"Managed"="$managed"
"Decorated"="$managed"

[HKEY_CURRENT_USER\\Control Panel\\Desktop]
"LogPixels"=dword:$(printf '%08x' "$dpi")

[HKEY_LOCAL_MACHINE\\Software\\Wine\\Drives]
"z:"="network"
SETTINGS
}

# The program's output goes to files and is printed when it has ended, with Unix line ends.
wine_run() {
  local output status=0
  output=$(mktemp -d) || return
  wine_program timeout -k 10 "$WINE_TIMEOUT" "$wine_programs/wine64" "$@" \
    >"$output/out" 2>"$output/err" || status=$?
  tr -d '\r' <"$output/out"
  tr -d '\r' <"$output/err" >&2
  rm -rf "$output"
  return "$status"
}

wine_stop() {
  [ -n "$wine_folder" ] || return 0
  wine_program "$wine_programs/wineserver64" -k >/dev/null 2>&1 || true
  wine_folder=
  wine_display=
}
