# Sourced by the scripts that cross-build (windows, web): their steps and
# timings, a prefix built once into the cache, and Debian's own source
# package of the installed libpoco-dev. Callers set `label` (shown on each
# step) and `timings=()`.

# apt-get source needs deb-src entries; they mirror the deb entries already
# configured, so the sources match the installed packages.
enable_sources() {
    local sudo=()
    [ "$(id -u)" -ne 0 ] && sudo=(sudo)
    grep -q '^Package: poco' <<<"$(apt-cache showsrc poco 2>/dev/null)" && return
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

# Runs a step, named, and keeps its time for print_timings.
step() {
    local name=$1 begin=$SECONDS
    shift
    echo "-- $label: $name"
    "$@"
    timings+=("$(printf '%-32s %5d s' "$name" $((SECONDS - begin)))")
}

print_timings() {
    echo "-- $label: stage timings"
    local line
    for line in "${timings[@]}"; do echo "   $line"; done
    printf '   %-32s %5d s\n' total $((SECONDS - start))
}

# Makes PREFIX with BUILD SCRATCH, unless it was made whole before: BUILD
# fills SCRATCH/install in a scratch folder that then moves into place whole,
# so an interrupted build never leaves a half prefix that looks usable.
build_prefix_once() {
    local prefix=$1 build=$2
    [ -f "$prefix/.complete" ] && { echo "   reusing $prefix"; return; }
    local scratch="$prefix.part"
    rm -rf "$scratch" "$prefix"
    mkdir -p "$scratch/install/include"
    "$build" "$scratch"
    mv "$scratch/install" "$prefix"
    rm -rf "$scratch"
    touch "$prefix/.complete"
}
