# Sourced by the scripts that cross-build Poco (windows, web): Debian's own
# source package of the installed libpoco-dev, unpacked into a folder.

# apt-get source needs deb-src entries; they mirror the deb entries already
# configured, so the sources match the installed packages.
enable_sources() {
    local sudo=()
    [ "$(id -u)" -ne 0 ] && sudo=(sudo)
    apt-cache showsrc poco 2>/dev/null | grep -q '^Package: poco' && return
    local list=/etc/apt/sources.list.d/zuno-deb-src.sources
    if [ -f /etc/apt/sources.list.d/debian.sources ]; then
        sed 's/^Types: deb$/Types: deb-src/' /etc/apt/sources.list.d/debian.sources |
            "${sudo[@]}" tee "$list" >/dev/null
    else
        list=/etc/apt/sources.list.d/zuno-deb-src.list
        grep -h '^deb ' /etc/apt/sources.list | sed 's/^deb /deb-src /' |
            "${sudo[@]}" tee "$list" >/dev/null
    fi
    "${sudo[@]}" apt-get update -qq
}

# The version of Poco the build machine has, as Debian's source names it.
poco_version() {
    dpkg-query -W -f='${source:Version}' libpoco-dev
}

# Unpacks Poco's source package into DIR and prints the source tree's path.
poco_source() {
    local dir=$1
    enable_sources >&2
    mkdir -p "$dir"
    (cd "$dir" && apt-get source -qq "poco=$(poco_version)" >/dev/null 2>&1)
    find "$dir" -maxdepth 1 -mindepth 1 -type d -name 'poco-*' | head -1
}
