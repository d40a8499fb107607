# SPDX-FileCopyrightText: 2026 The Morlen authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
#
# What the scripts share: headings, packages, building, and what runs in the background for them. To be
# sourced.

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

heading() { printf '\n== %s ==\n' "$*"; }

die()
{
    printf '%s\n' "$*" >&2
    exit 1
}

# in_ci: whether this runs where what was not tested is a failure.
in_ci()
{
    case ${CI:-} in '' | false | 0) return 1 ;; esac
}

# listed_packages purpose… : the packages of packaging/packages.txt that serve one of these purposes.
listed_packages()
{
    local purposes=" $* "
    awk -v purposes="$purposes" '!/^#/ && NF && index(purposes, " " $1 " ") { print $2 }' \
        "$top/packaging/packages.txt" | sort -u
}

# missing_packages purpose… : those of them that are not installed, by one question to dpkg.
missing_packages()
{
    local wanted
    wanted=$(listed_packages "$@")
    # shellcheck disable=SC2086 # a list of words
    comm -23 <(printf '%s\n' "$wanted") \
        <(dpkg-query -W -f='${db:Status-Status} ${Package}\n' $wanted 2>/dev/null | sed -n 's/^installed //p' | sort -u)
}

# as_root command… : runs it as root. sudo asks for a password only where a person can give one.
as_root()
{
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null && { sudo -n true 2>/dev/null || [ -t 0 ]; }; then
        sudo "$@"
    else
        die "This needs root, or a user with sudo: $*"
    fi
}

apt() { as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=600 -o Acquire::Retries=3 "$@"; }

install_packages()
{
    if ! command -v dpkg-query >/dev/null; then
        printf 'Not a Debian system: what %s lists is taken to be there.\n' packaging/packages.txt
        return
    fi
    local missing
    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0
    heading "Installing from Debian: $(echo "$missing" | tr '\n' ' ')"
    apt update || { sleep 5 && apt update; }
    # shellcheck disable=SC2086 # a list of words
    apt install --no-install-recommends $missing
}

# build_tree folder targets cmake-option… : configures the tree and builds the targets, a list of words.
build_tree()
{
    local tree=$1 targets=$2 launcher=
    shift 2
    command -v ccache >/dev/null && launcher=ccache
    # shellcheck disable=SC2086 # a list of words
    cmake -S "$top" -B "$tree" -G Ninja -DCMAKE_CXX_COMPILER_LAUNCHER="$launcher" "$@" &&
        cmake --build "$tree" --target $targets --parallel "$(nproc)"
}

# wait_until seconds command… : true once the command is, false when the time is over.
wait_until()
{
    local ticks=$(($1 * 20))
    shift
    until "$@"; do
        [ $((ticks -= 1)) -gt 0 ] || return 1
        sleep 0.05
    done
}

# For the functions below the script sets `work`, a folder of its own, and `started`, an empty list.

# Ends what was started, the last first: the window manager goes before its display.
# shellcheck disable=SC2154,SC2317 # the script's `work`; called by the trap
leave()
{
    local i
    for ((i = ${#started[@]} - 1; i >= 0; --i)); do
        kill "${started[i]}" 2>/dev/null || true
        wait "${started[i]}" 2>/dev/null || true
    done
    rm -rf "$work"
}

# start name command… : in the background, with its output in a file.
start()
{
    local name=$1
    shift
    "$@" >"$work/$name.log" 2>&1 </dev/null &
    started+=($!)
}

# expect name seconds command… : the started command is ready once this is true; if not, its output tells why.
expect()
{
    local name=$1
    shift
    wait_until "$@" && return
    cat "$work/$name.log" >&2
    die "$name did not start."
}

# start_server [size [option of Xvfb …]]: a display without a window manager.
start_server()
{
    # Xvfb looks for a free display itself and writes its number to descriptor 3.
    # 96 dots per inch are those of most desktops; its own default is 100.
    start Xvfb Xvfb -displayfd 3 -dpi 96 -screen 0 "${1:-1280x900}x24" -nolisten tcp "${@:2}" 3>"$work/display"
    expect Xvfb 20 grep -qs . "$work/display"
    DISPLAY=:$(cat "$work/display")
    export DISPLAY
}

# start_display …: the same with one.
start_display()
{
    start_server "$@"
    start openbox openbox --sm-disable --startup "touch $work/managed"
    expect openbox 20 test -e "$work/managed"
}
