# Sourced by ./run and ./test: goes to the project's folder and installs the
# packages of scripts/packages.txt that this machine lacks.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

install_missing_packages() {
    command -v dpkg-query >/dev/null || return 0 # not Debian: what is here must do
    local wanted installed missing
    wanted=$(sed -e 's/#.*//' -e '/^\s*$/d' scripts/packages.txt | sort)
    installed=$(dpkg-query -W -f='${db:Status-Abbrev}${Package}\n' 2>/dev/null |
        sed -n 's/^ii //p' | sort)
    missing=$(comm -23 <(echo "$wanted") <(echo "$installed"))
    [ -n "$missing" ] || return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "These packages are missing; run this once as root or install sudo:" >&2
            echo "$missing" >&2
            exit 1
        }
        as_root=(sudo)
    fi
    echo "Installing:" $missing
    "${as_root[@]}" apt-get update -qq
    # shellcheck disable=SC2086 # one word per package is meant
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends $missing >/dev/null
}

# build PRESET [TARGET...]: configures when needed and builds.
build() {
    local preset=$1
    shift
    cmake --preset "$preset" >"build-$preset.log" 2>&1 || {
        cat "build-$preset.log" >&2
        exit 1
    }
    rm -f "build-$preset.log"
    if [ $# -gt 0 ]; then
        cmake --build --preset "$preset" --target "$@"
    else
        cmake --build --preset "$preset"
    fi
}

install_missing_packages
