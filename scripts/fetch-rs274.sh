#!/usr/bin/env bash
# Makes LinuxCNC's G-code interpreter available to the integration tests as DEST/rs274: the
# installed one when the machine has it, else Debian's linuxcnc-uspace unpacked into DEST. The
# package is not installed system-wide on purpose: it would bring in systemd, GTK and Tk, which
# the interpreter alone does not need.
# Never fails: when the interpreter cannot be had, DEST/absent.txt says why, and the tests that
# need it skip with that reason.
set -uo pipefail
dest=${1:?usage: fetch-rs274.sh DEST}
mkdir -p "$dest"
dest=$(cd "$dest" && pwd)
wrapper="$dest/rs274"
rm -f "$dest/absent.txt"

absent() {
  rm -f "$wrapper"
  printf "%s" "$1" >"$dest/absent.txt"
  echo "rs274: $1" >&2
  exit 0
}

# The interpreter answers a two-line program without error.
works() {
  printf 'T1 P1 D1 Z0 ;\n' >"$dest/check.tbl"
  printf 'G21 G90 G1 F100 X1\nM2\n' >"$dest/check.ngc"
  "$wrapper" -t "$dest/check.tbl" -g "$dest/check.ngc" "$dest/check.out" </dev/null >/dev/null 2>&1
}

[ -x "$wrapper" ] && works && exit 0

if command -v rs274 >/dev/null 2>&1; then
  printf '#!/bin/sh\nexec "%s" "$@"\n' "$(command -v rs274)" >"$wrapper"
  chmod +x "$wrapper"
  works || absent "the installed rs274 does not run"
  exit 0
fi

command -v apt-get >/dev/null 2>&1 && command -v dpkg >/dev/null 2>&1 ||
  absent "no apt-get to fetch linuxcnc-uspace with"
# Its one library that a build machine lacks: Boost.Python, whichever version it names.
boost=$(apt-cache depends linuxcnc-uspace 2>/dev/null | grep -o 'libboost-python[0-9.]*$' | head -1)
packages="$dest/packages"
rm -rf "$packages" "$dest/root" && mkdir -p "$packages"
(cd "$packages" && apt-get download linuxcnc-uspace $boost >/dev/null 2>&1) ||
  absent "apt-get download linuxcnc-uspace failed (no package lists or no network)"
for deb in "$packages"/*.deb; do
  dpkg-deb -x "$deb" "$dest/root" || absent "cannot unpack $deb"
done
libs=$(find "$dest/root/usr/lib" -maxdepth 1 -type d | paste -sd:)
cat >"$wrapper" <<WRAPPER
#!/bin/sh
LD_LIBRARY_PATH="$libs\${LD_LIBRARY_PATH:+:\$LD_LIBRARY_PATH}" exec "$dest/root/usr/bin/rs274" "\$@"
WRAPPER
chmod +x "$wrapper"
works || absent "rs274 of linuxcnc-uspace does not run here"
rm -rf "$packages"
