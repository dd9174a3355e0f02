#!/bin/busybox sh
# The first process of the emulated machine. Lays a memory file system over the host's files, which are read-only, and
# runs /run/vm/job/command.sh there; with vm.systemd the host's systemd is process 1 and runs it as a service. The
# command's exit status leaves through qemu's exit device.
bb=/bin/busybox
case $1 in in_root | report) bb=/run/vm/busybox ;; esac

# qemu ends with 2 * value + 1, and with 1 when it fails itself; so the value is never 0.
finish() {
  value=$(($1 + 1))
  [ $value -gt 120 ] && value=120
  printf "\\$(printf %03o $value)" | $bb dd of=/dev/port bs=1 seek=244 count=1 2>/dev/null
  $bb poweroff -f
}

share() { $bb mount -t 9p -o "trans=virtio,version=9p2000.L,msize=512000,$3" "$1" "$2" || finish 125; }

if [ "$1" = report ]; then
  finish "$2"
elif [ "$1" = in_root ]; then
  /bin/bash /run/vm/job/command.sh
  finish $?
fi

$bb mount -t proc proc /proc
$bb mount -t sysfs sysfs /sys
$bb mount -t devtmpfs devtmpfs /dev
$bb mkdir -p /dev/pts /dev/shm
$bb mount -t devpts devpts /dev/pts
exec </dev/console >/dev/console 2>&1
$bb ip link set lo up

systemd= keep=
for word in $($bb cat /proc/cmdline); do
  case $word in
    vm.systemd) systemd=yes ;;
    vm.keep=*) keep=${word#*=} ;;
  esac
done

while read -r module; do $bb insmod "/modules/$module" || finish 126; done </modules/boot

share root /host ro,cache=loose
$bb mount -t tmpfs -o mode=755 tmpfs /writable
$bb mkdir /writable/upper /writable/work
$bb mount -t overlay -o lowerdir=/host,upperdir=/writable/upper,workdir=/writable/work overlay /root || finish 124
$bb mount -t tmpfs -o mode=755 tmpfs /root/run
$bb mkdir -p /root/run/vm/job
$bb cp /bin/busybox /init /root/run/vm/
$bb cp -r /modules /root/run/vm/
share job /root/run/vm/job cache=none

# Sockets and locks of the host mean nothing here. The sources may lie below /tmp, though.
if [ "${keep#/tmp/}" != "$keep" ]; then
  $bb mkdir -p /keep
  $bb mount --bind "/root$keep" /keep
fi
$bb mount -t tmpfs -o mode=1777 tmpfs /root/tmp
if [ -d /keep ]; then
  $bb mkdir -p "/root$keep"
  $bb mount --move /keep "/root$keep"
fi
for folder in proc sys dev; do $bb mount --move /$folder /root/$folder; done
$bb mount -t tmpfs -o mode=1777 tmpfs /root/dev/shm
[ -z "$systemd" ] && exec $bb switch_root /root /run/vm/busybox sh /run/vm/init in_root

# Generators make units for what this machine does not have, anew at each reload.
$bb mount -t tmpfs tmpfs /root/usr/lib/systemd/system-generators
# By these files systemd takes itself for one in a container, when the host is one.
$bb rm -f /root/.dockerenv /root/run/.containerenv
units=/root/run/systemd/system
$bb mkdir -p $units
# These walk over all files of the host, which takes long.
for unit in systemd-tmpfiles-setup systemd-journal-flush systemd-sysctl systemd-update-utmp; do
  $bb ln -s /dev/null $units/$unit.service
done
$bb cat >$units/vm.service <<'UNIT'
[Unit]
Wants=systemd-udevd.service systemd-udev-trigger.service
After=systemd-udevd.service systemd-udev-trigger.service
[Service]
Type=oneshot
StandardOutput=tty
StandardError=tty
TTYPath=/dev/console
Environment=VM_SYSTEMD=1
ExecStart=/bin/bash /run/vm/job/command.sh
ExecStopPost=/bin/sh -c 'exec /run/vm/busybox sh /run/vm/init report $EXIT_STATUS'
UNIT
exec $bb switch_root /root /lib/systemd/systemd --unit=vm.service
