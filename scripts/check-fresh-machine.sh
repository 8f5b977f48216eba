#!/usr/bin/env bash
# Runs the README's two commands in a brand-new Debian 12 (a debootstrap
# minbase chroot) on the committed HEAD, then installs the Debian package
# there, builds an application against it and removes it. Dev machines collect packages
# installed by hand; only a pristine system shows what bootstrap.sh forgot.
#
# Exit codes: 0 both commands passed, 77 the Debian mirror is unreachable
# (a network fault, not a project failure: callers may skip), else failure.
# Env: VELMORA_FRESH_CACHE (default /var/cache/velmora-fresh),
#      VELMORA_FRESH_MIRROR (default: this machine's own bookworm mirror).
set -euo pipefail

suite=bookworm
repo=$(git -C "$(dirname "$0")" rev-parse --show-toplevel)
cache=${VELMORA_FRESH_CACHE:-/var/cache/velmora-fresh}
base=$cache/$suite-minbase
logs=$cache/logs
child="" base_tmp="" run_dir=""

log() { printf '[fresh %s] %s\n' "$(date +%T)" "$*"; }

skip() {
    printf '\n%s\nSKIPPED: fresh-machine check: %s\n%s\n\n' \
        "$(printf '!%.0s' {1..72})" "$*" "$(printf '!%.0s' {1..72})" >&2
    exit 77
}

# The first bookworm "deb" source this machine uses, so the chroot sees the
# same archive (and the same network path) as the machine itself.
find_mirror() {
    local f uri=""
    if [ -n "${VELMORA_FRESH_MIRROR:-}" ]; then echo "$VELMORA_FRESH_MIRROR"; return; fi
    for f in /etc/apt/sources.list.d/*.sources; do
        [ -f "$f" ] || continue
        uri=$(awk -v s="$suite" 'BEGIN { RS = ""; FS = "\n" }
            { u = ""; deb = 0; ok = 0; on = 1
              for (i = 1; i <= NF; i++) {
                  n = split($i, w, /[ \t]+/)
                  if (w[1] == "URIs:") u = w[2]
                  if (w[1] == "Enabled:" && w[2] == "no") on = 0
                  for (j = 2; j <= n; j++) {
                      if (w[1] == "Types:" && w[j] == "deb") deb = 1
                      if (w[1] == "Suites:" && w[j] == s) ok = 1
                  }
              }
              if (u != "" && deb && ok && on) { print u; exit } }' "$f")
        [ -n "$uri" ] && break
    done
    for f in /etc/apt/sources.list.d/*.list /etc/apt/sources.list; do
        [ -n "$uri" ] && break
        [ -f "$f" ] || continue
        # Options in [...] may sit between "deb" and the URI.
        uri=$(sed -E 's/\[[^]]*\]//' "$f" | awk -v s="$suite" '$1 == "deb" && $3 == s { print $2; exit }')
    done
    case "$uri" in http://* | https://*) echo "${uri%/}" ;; *) echo http://deb.debian.org/debian ;; esac
}

mirror_reachable() { wget -q -T 15 -t 2 -O /dev/null "$mirror/dists/$suite/Release"; }

# Deepest first, so a mount is never left hidden under its parent.
mounts_under() { findmnt -rn -o TARGET | awk -v p="$1/" 'index($0 "/", p) == 1' | sort -r; }

# Ends what this script started: the current step's process group, then
# anything still running with its root inside the chroot, which would
# otherwise keep the mounts busy.
stop_processes() {
    local p
    if [ -n "$child" ]; then
        kill -TERM -- "-$child" 2>/dev/null && sleep 1
        kill -KILL -- "-$child" 2>/dev/null || true
        child=""
    fi
    for p in /proc/[0-9]*; do
        case "$(readlink "$p/root" 2>/dev/null)" in "$1" | "$1"/*) kill -KILL "${p#/proc/}" 2>/dev/null || true ;; esac
    done
}

# rm -rf through a live /dev or /proc mount would delete the host's own
# files, so nothing is deleted until findmnt shows nothing mounted below.
safe_remove() {
    local dir=$1 m
    [ -d "$dir" ] || return 0
    stop_processes "$dir"
    for m in $(mounts_under "$dir"); do umount "$m" 2>/dev/null || umount -l "$m" || true; done
    if [ -n "$(mounts_under "$dir")" ]; then
        echo "REFUSING to delete $dir: still mounted below it:" >&2
        mounts_under "$dir" >&2
        return 1
    fi
    rm -rf --one-file-system "$dir"
}

cleanup() {
    local rc=$? t0=$SECONDS
    trap - EXIT INT TERM
    [ -n "$run_dir$base_tmp" ] || exit "$rc"
    safe_remove "$run_dir" || rc=1
    safe_remove "$base_tmp" || rc=1
    log "cleanup: unmounted and removed $run_dir$base_tmp after $((SECONDS - t0))s"
    exit "$rc"
}

# Runs a step in its own process group (so an interrupt can end all of it)
# and in the background (so the INT/TERM traps fire without waiting for it),
# without the lock: leftovers of a killed run must not block the next one.
step() {
    local name=$1 out=$2 t0=$SECONDS rc=0
    shift 2
    log "$name ..."
    setsid "$@" </dev/null >"$out" 2>&1 9>&- &
    child=$!
    wait "$child" || rc=$?
    child=""
    log "$name: $( ((rc)) && echo "FAILED (exit $rc)" || echo ok) after $((SECONDS - t0))s"
    return "$rc"
}

# wget is the mirror probe as well as debootstrap's downloader.
need_tools() {
    local out=$logs/host-apt.log
    command -v debootstrap >/dev/null && command -v wget >/dev/null && return 0
    log "installing debootstrap and wget on this machine"
    export DEBIAN_FRONTEND=noninteractive
    { apt-get install -y -qq debootstrap wget ||
        { apt-get update -qq && apt-get install -y -qq debootstrap wget; }; } >"$out" 2>&1 && return 0
    cat "$out" >&2
    ! grep -qE 'Temporary failure resolving|Could not connect|Unable to connect|Failed to fetch' "$out" ||
        skip "cannot fetch debootstrap: the Debian mirror is unreachable (network fault)"
    echo "FAILED: could not install debootstrap on this machine" >&2
    exit 1
}

build_base() {
    [ -d "$base" ] && return 0
    # Built aside and renamed into place: an interrupted build is never reused.
    base_tmp=$(mktemp -d "$cache/base.tmp.XXXXXX")
    if ! step "debootstrap $suite from $mirror (once per machine)" "$logs/debootstrap.log" \
        debootstrap --variant=minbase "$suite" "$base_tmp" "$mirror"; then
        tail -n 20 "$logs/debootstrap.log" >&2
        mirror_reachable || skip "debootstrap lost the mirror $mirror mid-way (network fault)"
        echo "FAILED: debootstrap (log: $logs/debootstrap.log)" >&2
        exit 1
    fi
    [ -z "$(mounts_under "$base_tmp")" ] || { echo "debootstrap left mounts in $base_tmp" >&2; exit 1; }
    rm -f "$base_tmp"/var/cache/apt/archives/*.deb
    mv -T "$base_tmp" "$base"
    base_tmp=""
}

# A throwaway copy of the base, reachable the way a fresh install is.
prepare_run() {
    local root=$1 d n ma mi
    # In memory: unpacking Qt and building are faster there, and unmounting
    # it is the whole cleanup.
    mkdir "$root" && mount -t tmpfs -o mode=755,size=8G tmpfs "$root"
    cp -a "$base/." "$root/"
    cp -L /etc/resolv.conf "$root/etc/resolv.conf"
    echo "deb $mirror $suite main" >"$root/etc/apt/sources.list"
    # Skips fsync only: what gets installed is unchanged, but it is much faster.
    echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/velmora-fresh-unsafe-io"
    mount -t proc proc "$root/proc"
    # Device nodes of its own on a tmpfs rather than a bind of the host's
    # /dev, so nothing the chroot does can touch the host's devices.
    mount -t tmpfs -o mode=755,nosuid tmpfs "$root/dev"
    for d in null:1:3 zero:1:5 full:1:7 random:1:8 urandom:1:9 tty:5:0; do
        IFS=: read -r n ma mi <<<"$d"
        mknod -m 666 "$root/dev/$n" c "$ma" "$mi"
    done
    mkdir -p "$root/dev/pts" "$root/dev/shm" && chmod 1777 "$root/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666,mode=620 devpts "$root/dev/pts"
    ln -s pts/ptmx "$root/dev/ptmx" && ln -s /proc/self/fd "$root/dev/fd"
    # Downloaded .debs are kept between runs; they are still installed anew.
    mount --bind "$cache/apt-archives" "$root/var/cache/apt/archives"
    # So is the compiler cache that bootstrap.sh sets up: a cached object is
    # the one the compiler would make, and compiling dominates the run.
    mkdir -p "$root/root/.cache/ccache"
    mount --bind "$cache/ccache" "$root/root/.cache/ccache"
    git clone -q --no-checkout --no-hardlinks "$repo" "$root/root/velmora"
    git -C "$root/root/velmora" checkout -q "$sha"
}

main() {
    local t0=$SECONDS t1 cmd d out failed=""
    [ "$(id -u)" -eq 0 ] || { echo "check-fresh-machine.sh must run as root (chroot, mount)" >&2; exit 1; }
    mkdir -p "$cache/apt-archives/partial" "$cache/ccache" "$logs"
    exec 9>"$cache/lock"
    flock -n 9 || { log "another check holds $cache/lock; waiting"; flock 9; }
    trap cleanup EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM
    # With the lock held, any leftover is from a run that was killed outright.
    for d in "$cache"/base.tmp.* "$cache"/run.*; do
        [ -d "$d" ] && log "removing what a killed run left: $d"
        safe_remove "$d"
    done

    need_tools
    mirror=$(find_mirror)
    mirror_reachable || skip "Debian mirror $mirror unreachable (network fault)"
    sha=$(git -C "$repo" rev-parse HEAD)
    [ -z "$(git -C "$repo" status --porcelain --untracked-files=no)" ] ||
        log "note: uncommitted changes in $repo are not part of this check"
    build_base
    run_dir=$(mktemp -d "$cache/run.XXXXXX")
    t1=$SECONDS
    log "fresh copy of the base + clone of $(git -C "$repo" log -1 --format='%h %s' "$sha") ..."
    prepare_run "$run_dir/root"
    log "fresh copy: ok after $((SECONDS - t1))s"

    # As a fresh root login: no display, no variables from this shell.
    local login=(env -i HOME=/root USER=root LOGNAME=root SHELL=/bin/bash LANG=C.UTF-8
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin
        chroot "$run_dir/root" /bin/bash -lc)
    # Then the Debian package: installed, built against, removed.
    for cmd in "bash scripts/preview.sh" "bash scripts/test.sh" "bash scripts/check-package.sh"; do
        out=$logs/${cmd//[^a-z]/_}.log
        if ! step "$cmd" "$out" "${login[@]}" "cd /root/velmora && $cmd"; then failed=$cmd; break; fi
        tail -n 3 "$out"
    done
    if [ -n "$failed" ]; then
        mirror_reachable || skip "Debian mirror $mirror lost during '$failed' (network fault)"
        printf '\nFAILED on a fresh %s: %s\n--- last 40 lines of %s ---\n' "$suite" "$failed" "$out" >&2
        tail -n 40 "$out" >&2
        exit 1
    fi
    log "PASSED: the README's commands and the Debian package work on a fresh Debian $suite ($((SECONDS - t0))s in all)"
}

main "$@"
