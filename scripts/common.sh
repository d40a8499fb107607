# SPDX-FileCopyrightText: 2026 The Morlen authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
#
# What ./run and ./test share: headings, packages, configuring and building. To be sourced.

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

heading() { printf '\n== %s ==\n' "$*"; }

die()
{
    printf '%s\n' "$*" >&2
    exit 1
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

# build_tree folder target cmake-option… : configures the tree and builds the target.
build_tree()
{
    local tree=$1 target=$2 launcher=
    shift 2
    command -v ccache >/dev/null && launcher=ccache
    cmake -S "$top" -B "$tree" -G Ninja -DCMAKE_CXX_COMPILER_LAUNCHER="$launcher" "$@" &&
        cmake --build "$tree" --target "$target" --parallel "$(nproc)"
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
