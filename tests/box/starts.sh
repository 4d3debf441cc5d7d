#!/bin/sh
# Under which users and in which environments a box starts, and the message when it cannot.
# usage: starts.sh PATH_OF_GWBOX
. "$(dirname "$0")/../packaging/checks.sh"
gwbox=$(readlink -f "$1")
scratch "$(dirname "$gwbox")"
[ "$(id -u)" -eq 0 ] || {
  echo "skipped: these checks need root"
  exit 0
}

# Checks the real portmapper, a trapped request and the box's own host name.
work='rpcinfo -p >/dev/null && iwpriv ra0 set LEDEnable=1 >/dev/null && hostname | grep -qx gateway'
# works COMMAND...: a box must start when COMMAND runs gwbox.
works() { "$@" "$gwbox" run -- sh -c "$work" </dev/null; }
# refused TEXT COMMAND...: no box may start then, and the message must contain TEXT.
refused() {
  text=$1
  shift
  ends_with 125 "$@" "$gwbox" run -- true </dev/null 2>"$dir/err" || return
  holds "$(cat "$dir/err")" "$text"
}
# without CAPABILITIES COMMAND...: runs the command without them.
without() {
  lost=$1
  shift
  setpriv --bounding-set="$(echo "$lost" | sed 's/[^,]*/-&/g')" "$@"
}
nobody="setpriv --reuid=65534 --regid=65534 --clear-groups"
limited="echo 0 >/proc/sys/user/max_user_namespaces; exec \"\$@\""

for lost in sys_admin net_admin dac_override setpcap setgid setuid net_bind_service \
  sys_admin,net_admin; do
  check "root without $lost" works without $lost
done
container=chown,dac_override,fowner,fsetid,kill,setgid,setuid,setpcap,net_bind_service,net_raw
check "root as containers have it" works setpriv \
  --bounding-set="-all,$(echo $container,sys_chroot,mknod,audit_write,setfcap | sed 's/[^,]*/+&/g')"
check "root of a namespace with one id" works unshare -Ur
check "nobody as root of a namespace with one id" works $nobody unshare -Ur
check "what root could write stays as it is" ends_with 1 without sys_admin "$gwbox" run --no-portmap -- \
  sh -c 'value=$(cat /proc/sys/vm/swappiness); echo "$value" >/proc/sys/vm/swappiness || exit 1'

# The message names what is missing.
check "no user namespaces" refused "user.max_user_namespaces is 0" \
  unshare -Ur sh -c "$limited" sh setpriv --bounding-set=-net_admin
check "nor the capability" holds "$(cat "$dir/err")" "without CAP_NET_ADMIN this takes a user namespace"
check "no network namespaces" refused "user.max_net_namespaces is 0" \
  unshare -Ur sh -c "$(echo "$limited" | sed s/max_user/max_net/)" sh
check "a user without an id" refused "this user has no id in the one around it" unshare -U
check "no capability to be root inside" refused "for root this takes CAP_SETFCAP" \
  without sys_admin,setfcap

# A container's own file in /etc and a file system below /var: the box shows both, and only the
# box sees what is written there.
cat >"$dir/contained" <<'SCRIPT'
#!/bin/sh
# usage: contained FILE COMMAND...
echo "10.1.1.1 contained" >"$1"
mount --bind "$1" /etc/hosts
mount -t tmpfs tmpfs /var/lib/misc
echo mounted >/var/lib/misc/mark
shift
"$@" || exit
test "$(ls /var/lib/misc)" = mark && test "$(cat /etc/hosts)" = "10.1.1.1 contained"
SCRIPT
chmod +x "$dir/contained"
contained="unshare --mount $dir/contained $dir/hosts"
change='grep -q contained /etc/hosts && grep -q gateway /etc/hosts && echo more >>/etc/hosts &&
  test -s /var/lib/dpkg/status && test -L /var/run && grep -q mounted /var/lib/misc/mark &&
  touch /var/lib/misc/new /var/lib/dpkg/new'
check "what is mounted in a container is there" ends_with 0 $contained \
  setpriv --bounding-set=-sys_admin "$gwbox" run -- sh -c "$change && $work"
check "and for an ordinary user" ends_with 0 $contained \
  $nobody "$gwbox" run -- sh -c "$change && $work"

covering='mount --bind /dev/null /proc/keys; exec "$@"'
check "a /proc that is covered in part" refused \
  "Operation not permitted (where a container covers parts of it this takes root with CAP_SYS_ADMIN)" \
  unshare --mount sh -c "$covering" sh setpriv --bounding-set=-sys_admin
check "which is no matter with it" works unshare --mount sh -c "$covering" sh

# A chroot is not a mount point. Unless gwbox prevents it, mounts made in it appear outside.
mkdir -p "$dir/root/tmp" "$dir/root/run"
for link in /bin /sbin /lib*; do
  [ ! -L "$link" ] || ln -s "$(readlink "$link")" "$dir/root$link"
done
cat >"$dir/in_chroot" <<'SCRIPT'
#!/bin/sh
# usage: in_chroot ROOT BUILD COMMAND...
root=$1
build=$2
shift 2
mount --make-rshared /
for name in /usr /etc /var /dev /proc "$build"; do
  mkdir -p "$root$name"
  mount --rbind "$name" "$root$name"
done
cat /proc/self/mountinfo >"$root.before"
chroot "$root" "$@"
status=$?
cat /proc/self/mountinfo >"$root.after"
exit $status
SCRIPT
chmod +x "$dir/in_chroot"
in_chroot="unshare --mount --propagation private $dir/in_chroot $dir/root $(dirname "$gwbox")"
check "a box in a chroot" works $in_chroot
check "which leaves its mounts as they were" cmp "$dir/root.before" "$dir/root.after"
check "an ordinary user's in a chroot" refused "without root this takes a user namespace: in a chroot the kernel gives none" \
  $in_chroot $nobody

# A portmapper that does not start. The box shows /etc, so a changed copy is mounted there.
cat >"$dir/with_etc" <<'SCRIPT'
#!/bin/sh
# usage: with_etc COPY CHANGE COMMAND...
copy=$1
change=$2
shift 2
rm -rf "$copy"
cp -a /etc "$copy"
(cd "$copy" && eval "$change")
mount --bind "$copy" /etc
exec "$@"
SCRIPT
chmod +x "$dir/with_etc"
with_etc="unshare --mount $dir/with_etc $dir/etc"
check "a portmapper that ends" refused "the portmapper ended with status 1" \
  $with_etc "sed -i /^_rpc:/d passwd"
check "says why" holds "$(cat "$dir/err")" "gwbox: it said: cannot get uid of '_rpc': Success"
check "one that serves no UDP" refused "the portmapper did not answer within 5 seconds" \
  $with_etc "rm services"
check "says why, too" holds "$(cat "$dir/err")" \
  "gwbox: it said: cannot get local address for udp: Servname not supported for ai_socktype"
all_passed
