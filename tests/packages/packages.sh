#!/usr/bin/env bash
# The Debian packages in a fresh Debian root, as a user meets them: lintian has no errors; apt installs
# them with all that they require; a still, the saver and a movie are drawn; the compiler's example is
# built by pkg-config and CMake; after the removal no file is left. The tar ball draws a still in another
# root. Status 77: skipped, with the reason. Needs root, mmdebstrap and a mirror that apt knows.
#
# Usage: packages.sh BUILD_FOLDER. With KEEP_ROOT=1 the root folder is kept, for a look at it.
set -euo pipefail
build=$1

skip() {
    echo "Skipped: $1"
    exit 77
}

fail() {
    echo "$1"
    exit 1
}

[ "$(id -u)" = 0 ] || skip "installing into a root folder requires root."
for tool in mmdebstrap:mmdebstrap lintian:lintian dpkg-shlibdeps:dpkg-dev cpack:cmake \
    patchelf:patchelf zstd:zstd; do
    command -v "${tool%:*}" >/dev/null || skip "${tool%:*} is missing (package ${tool#*:})."
done
# All mounts are in a name space of this script's own, and end with it.
if [ -z "${OWN_MOUNTS:-}" ]; then
    unshare --mount --propagation private true 2>/dev/null ||
        skip "mounting requires more rights than this process has."
    OWN_MOUNTS=1 exec unshare --mount --propagation private bash "$0" "$@"
fi
[ -x "$build/bin/tarnwick-player" ] || skip "the player is not built."
suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
[ "$suite" = bookworm ] || skip "the packages of this build are for Debian $suite, not for Debian 12."
sources=$(apt-get indextargets --format 'deb $(REPO_URI) $(CODENAME) $(COMPONENT)' \
    'Created-By: Packages' 'Origin: Debian' | sort -u)
[ -n "$sources" ] || skip "apt knows no mirror of Debian."

folder=$(mktemp -d)
root=$folder/root
end() {
    umount "$folder"/*/dev/shm "$folder"/*/dev/pts "$folder"/*/proc 2>/dev/null || true
    if [ "${KEEP_ROOT:-}" = 1 ]; then
        echo "$root is kept."
    else
        rm -rf --one-file-system "$folder"
    fi
}
trap end EXIT

# Runs a command in the root, as an ordinary user where it starts with `user`.
inside() {
    chroot "$root" env -i PATH=/usr/bin:/bin:/usr/sbin:/sbin LC_ALL=C.UTF-8 HOME=/root \
        DEBIAN_FRONTEND=noninteractive "$@"
}
user() {
    chroot --userspec=65534:65534 "$root" env -i PATH=/usr/bin:/bin LC_ALL=C.UTF-8 HOME=/tmp/home \
        XDG_RUNTIME_DIR=/tmp/home "$@"
}
# The luminance of the brightest pixel of a picture in the root, [0, 255].
brightest() {
    local value
    value=$(user ffmpeg -v error -i "$1" -vf signalstats,metadata=print:file=- -f null - |
        sed -n 's/^lavfi.signalstats.YMAX=//p')
    echo "${value%.*}"
}
brighterThan() { # NUMBER PICTURE NAME
    local met
    met=$(brightest "$2")
    [ "$met" -gt "$1" ] || fail "The $3 is dark: its brightest value is $met."
}
# All files but those of the system that change by themselves.
listing() {
    (cd "$root" && find . -xdev \( -path ./proc -o -path ./dev -o -path ./tmp -o -path ./var/cache \
        -o -path ./var/lib/dpkg -o -path ./var/lib/apt -o -path ./var/log -o -path ./root \) -prune \
        -o -print | sort)
}

# Makes `root`.
freshRoot() {
    mmdebstrap --quiet --variant=apt --mode=root "$suite" "$root" - <<<"$sources"
    mount -t proc proc "$root/proc"
    mkdir -p "$root/dev/shm" "$root/dev/pts"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts"
    [ -e "$root/dev/ptmx" ] || ln -s pts/ptmx "$root/dev/ptmx"
    mount -t tmpfs tmpfs "$root/dev/shm"
    [ -c "$root/dev/null" ] || mknod -m 666 "$root/dev/null" c 1 3
    cp -L /etc/resolv.conf "$root/etc/resolv.conf"
    install -d -m 1777 "$root/tmp" "$root/tmp/home"
    inside apt-get -qq update
}

echo "Packages"
(umask 022 && cpack -G DEB --config "$build/CPackConfig.cmake" -B "$folder/packages") >"$folder/log" ||
    { cat "$folder/log"; fail "cpack failed."; }
# No bug of Debian asks for the packages, and CPack writes a script that runs ldconfig beside the
# trigger. The library is of one architecture, so its file for pkg-config is in the plain folder.
unfit=initial-upload-closes-no-bugs,maintscript-calls-ldconfig
unfit+=,pkg-config-unavailable-for-cross-compilation
lintian --allow-root --fail-on error,warning --suppress-tags "$unfit" "$folder"/packages/*.deb ||
    fail "lintian has errors or warnings."
ls -s --block-size=1K "$folder"/packages/*.deb

echo "A fresh root"
freshRoot
install -d "$root/tmp/packages"
cp "$folder"/packages/*.deb "$root/tmp/packages"
# The tools of the trials, and recommended packages. They are not left by Tarnwick's packages.
inside apt-get -qq install -y --no-install-recommends mesa-vulkan-drivers xvfb ffmpeg >/dev/null
listing >"$folder/system"

echo "Installation"
! dpkg-deb -f "$folder"/packages/libtarnwick-msl1_*.deb Depends | grep -E 'libx11|libav|libcurl|libvulkan|libqt' ||
    fail "The compiler's package requires more than the compiler."
inside sh -c 'apt-get -qq install -y --no-install-recommends /tmp/packages/libtarnwick-msl1_*.deb \
    /tmp/packages/tarnwick_*.deb' >/dev/null
! inside sh -c "dpkg-query -W -f '\${Package} \${db:Status-Status}\n' | grep -E -- '-dev installed|^libqt'" ||
    fail "The package tarnwick installs packages for development, or Qt."
inside dpkg-query -W -f '${Package} ${Version} ${Installed-Size} KB\n' tarnwick

echo "A still"
episode=/usr/share/tarnwick/episodes/rose-window.metal
user tarnwick --version
user tarnwick doctor || fail "The doctor finds something that is required and missing."
user tarnwick still $episode -o /tmp/home/still.png --size 320x180
brighterThan 100 /tmp/home/still.png still

echo "The saver"
user sh -c 'Xvfb :97 -screen 0 640x360x24 -nolisten tcp >/tmp/home/xvfb 2>&1 & display=$!
    for wait in 1 2 3 4 5 6 7 8 9 10; do [ -e /tmp/.X11-unix/X97 ] && break; sleep 0.5; done
    DISPLAY=:97 tarnwick-saver --size 640x360 >/tmp/home/saver 2>&1 & saver=$!
    sleep 2
    ffmpeg -v error -f x11grab -video_size 640x360 -i :97 -frames:v 1 /tmp/home/saver.png
    kill -TERM $saver; wait $saver; kill $display; wait $display; cat /tmp/home/saver' || true
brighterThan 60 /tmp/home/saver.png "saver's window"

echo "An installed saver"
inside test -x /usr/libexec/xscreensaver/tarnwick-saver ||
    fail "mate-screensaver finds no tarnwick-saver in its folder."
user tarnwick saver install $episode --name Window
user tarnwick saver list | grep -q mate-screensaver || fail "mate-screensaver does not list the saver."
user tarnwick saver uninstall window

echo "A movie"
user tarnwick export $episode -o /tmp/home/movie.mp4 --duration 1 --fps 30 --size 320x180
frames=$(user ffprobe -v error -count_frames -select_streams v:0 -show_entries \
    stream=nb_read_frames -of csv=p=0 /tmp/home/movie.mp4)
[ "$frames" = 30 ] || fail "The movie has $frames frames, not 30."

echo "The player"
inside sh -c 'apt-get -qq install -y --no-install-recommends /tmp/packages/tarnwick-player_*.deb' >/dev/null
user tarnwick play --version
! inside ldd /usr/bin/tarnwick-player | grep 'not found' || fail "A library of the player is missing."

echo "A program with the compiler"
inside sh -c 'apt-get -qq install -y --no-install-recommends /tmp/packages/tarnwick-dev_*.deb \
    gcc libc6-dev libvulkan-dev pkg-config cmake make >/dev/null'
user sh -c 'gcc -std=c11 -Wall -Werror /usr/share/doc/tarnwick-dev/examples/*.c -o /tmp/home/triangle \
    $(pkg-config --cflags --libs tarnwick-msl vulkan) && /tmp/home/triangle /tmp/home/triangle.ppm'
[ "$(head -c 14 "$root/tmp/home/triangle.ppm" | tr '\n' ' ')" = 'P6 256 256 255' ] || fail "There is no triangle."
brighterThan 60 /tmp/home/triangle.ppm triangle
user sh -c 'cmake -S /usr/share/doc/tarnwick-dev/examples -B /tmp/home/build >/tmp/home/log &&
    cmake --build /tmp/home/build >>/tmp/home/log || { cat /tmp/home/log; exit 1; }
    /tmp/home/build/triangle /tmp/home/again.ppm'
cmp "$root/tmp/home/triangle.ppm" "$root/tmp/home/again.ppm" || fail "CMake builds another triangle."

echo "Removal"
inside apt-get -qq purge -y --autoremove tarnwick-dev gcc libc6-dev libvulkan-dev pkg-config cmake make \
    >/dev/null
inside apt-get -qq purge -y --autoremove tarnwick tarnwick-player libtarnwick-msl1 >/dev/null
listing >"$folder/after"
left=$(comm -13 "$folder/system" "$folder/after" | grep -v -E '^./(etc/ld.so.cache|run/)' || true)
! grep -i tarnwick <<<"$left" || fail "Files of the packages are left."
[ -z "$left" ] || { echo "Left by required packages of Debian:"; echo "$left"; }

# A system without Tarnwick's packages and what they require, but with a driver.
echo "The tar ball in another root"
bash "$(dirname "$0")/../../scripts/tarball" "$folder/tarnwick.tar.zst" "$build"
first=$root root=$folder/other
freshRoot
tar -C "$root/opt" -xf "$folder/tarnwick.tar.zst"
du -sh "$root/opt/tarnwick"
inside apt-get -qq install -y --no-install-recommends mesa-vulkan-drivers libvulkan1 >/dev/null
user /opt/tarnwick/bin/tarnwick --version
user /opt/tarnwick/bin/tarnwick still /opt/tarnwick/share/tarnwick/episodes/rose-window.metal \
    -o /tmp/home/still.png --size 320x180
cmp "$first/tmp/home/still.png" "$root/tmp/home/still.png" || fail "The tar ball draws another still."
echo "The packages and the tar ball work."
