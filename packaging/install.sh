#!/usr/bin/env bash
# Puts a build into the system and takes it out again. Asks for sudo when it needs it.
#
# usage: install.sh install BUILD_DIR
#        install.sh uninstall [PREFIX]        PREFIX is /usr/local unless it was built for another
set -euo pipefail

say() { echo "veltrix: $*"; }
fail() {
  say "$*" >&2
  exit 1
}

[ $# -ge 1 ] || fail "install or uninstall?"
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || fail "this needs root, and there is no sudo"
  say "this changes the system; sudo may ask for your password"
  exec sudo -- "$(readlink -f "$0")" "$@"
fi

has_systemd() { [ -d /run/systemd/system ]; }

# Every file that was put in place, one a line, itself included.
list_below() { echo "$1/lib/veltrix/installed-files"; }

# Removes the files that the input names, and folders below the prefix that are empty then, its first level and the
# folder of manual pages aside, which systems have from the start.
remove_files() {
  local prefix=$1 files folder
  mapfile -t files
  [ ${#files[@]} -gt 0 ] || return 0
  rm -f -- "${files[@]}"
  printf '%s\n' "${files[@]%/*}" | sort -ru | while IFS= read -r folder; do
    while [[ $folder == "$prefix"/*/* && $folder != "$prefix/share/man" ]] && rmdir -- "$folder" 2>/dev/null; do folder=${folder%/*}; done
  done
}

reload_udev() {
  command -v udevadm >/dev/null || return 0
  udevadm control --reload 2>/dev/null || return 0
  udevadm trigger --action=change --subsystem-match=misc --sysname-match=uinput
  udevadm trigger --action=change --subsystem-match=input
  udevadm settle -t 20 || true
}

install_build() {
  local build=$1 prefix list
  [ -f "$build/cmake_install.cmake" ] || fail "$build is no build tree; ./dev install makes one"
  prefix=$(sed -n 's/^CMAKE_INSTALL_PREFIX:PATH=//p' "$build/CMakeCache.txt")
  list=$(list_below "$prefix")
  say "copying to $prefix"
  cmake --install "$build" >/dev/null
  # What an older version had and this one has not.
  if [ -f "$list" ]; then
    { grep -vxF -f "$build/install_manifest.txt" "$list" || true; } | { grep -vxF "$list" || true; } | remove_files "$prefix"
  fi
  { cat "$build/install_manifest.txt"; echo; echo "$list"; } | sed '/^$/d' >"$list.new"
  mv "$list.new" "$list"
  chmod 644 "$list"
  systemd-sysusers "$prefix/lib/sysusers.d/veltrix.conf"
  modprobe uinput 2>/dev/null || [ -e /dev/uinput ] || say "this kernel has no uinput module: the driver cannot work" >&2
  reload_udev
  if has_systemd; then
    systemctl daemon-reload
    systemctl enable --quiet --now veltrix-driver.socket
    systemctl try-restart veltrix-driver.service
    say "the driver is installed; it starts when a helper wants it"
  else
    say "installed; systemd does not run here, so start $prefix/lib/veltrix/veltrix-driver yourself" >&2
  fi
  say "open Veltrix from your menus, or run veltrix-settings; ./dev uninstall takes everything out again"
}

uninstall() {
  local prefix=${1:-/usr/local} list
  list=$(list_below "$prefix")
  [ -f "$list" ] || fail "nothing of Veltrix is installed below $prefix"
  if has_systemd; then
    systemctl disable --quiet --now veltrix-driver.socket || true
    systemctl stop veltrix-driver.service || true
    systemctl reset-failed veltrix-driver.service 2>/dev/null || true
  fi
  remove_files "$prefix" <"$list"
  rmdir /run/veltrix 2>/dev/null || true
  userdel veltrix-driver 2>/dev/null || true
  has_systemd && systemctl daemon-reload
  reload_udev
  say "everything that was installed is gone; settings in people's home folders stay"
}

case $1 in
  install) [ $# -eq 2 ] || fail "which build?"; install_build "$(readlink -f "$2")" ;;
  uninstall) uninstall "${2:-/usr/local}" ;;
  *) fail "install or uninstall?" ;;
esac
