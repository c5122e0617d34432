# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Installs the Debian packages that are missing, and only those. Sourced after common.sh, which sets `root`.
# shellcheck disable=SC2154

# packages_of SET...: the names listed for these sets in scripts/packages.txt.
packages_of() {
    local wanted
    for wanted in "$@"; do
        awk -v wanted="$wanted" '$1 == wanted { print $2 }' "$root/scripts/packages.txt"
    done
}

package_installed() {
    [[ $(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

# as_root COMMAND...: runs it as root; fails when there is no way to become root.
as_root() {
    if [[ $(id -u) -eq 0 ]]; then
        "$@"
    elif ! command -v sudo >/dev/null; then
        return 1
    elif sudo -n true 2>/dev/null; then
        sudo -n "$@"
    elif [[ -t 0 && -t 2 ]]; then
        sudo "$@"
    else
        return 1
    fi
}

# need_packages SET...: returns with every package of the sets installed, or ends the script saying what is missing.
need_packages() {
    local -a missing=()
    local package
    if ! command -v dpkg-query >/dev/null; then
        say "This is not a Debian system; the counterparts of these packages are taken to be installed:"
        say "$(packages_of "$@" | tr '\n' ' ')"
        return
    fi
    while read -r package; do
        package_installed "$package" || missing+=("$package")
    done < <(packages_of "$@")
    if [[ ${#missing[@]} -eq 0 ]]; then
        return
    fi

    # Old package lists name files that the mirror no longer has, so they are renewed; when that fails, the lists that
    # are there may still do.
    local -a apt=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o Acquire::Retries=3 -o DPkg::Lock::Timeout=300)
    if as_root true; then
        say "Installing ${missing[*]}"
        as_root "${apt[@]}" update </dev/null >&2 || say "The package lists could not be renewed; trying with those there are"
        if as_root "${apt[@]}" install -y --no-install-recommends "${missing[@]}" </dev/null >&2; then
            return
        fi
        say "Installing failed. The same by hand, as root:"
    else
        say "Packages are missing and this user cannot install them. As root:"
    fi
    printf '\n    apt-get update && apt-get install -y --no-install-recommends %s\n\n' "${missing[*]}" >&2
    exit 1
}
