# shellcheck shell=bash
# The Debian 11 whose C library, 2.31, the archive for Linux is built against: scripts/package compiles with the machine's Clang 16
# and CMake (Debian 11's own is older than the project takes) and with the headers and libraries of this folder. Sourced by scripts
# that stand at the project's root; needs packages.sh.
#
#   old_debian_ready                whether it is there, made if it has to be; else old_debian_obstacle says why
#   in_old_debian FOLDER COMMAND    runs a command there, which sees FOLDER, read-only, in its place
#
# Libraries are static there, so that the archive takes none from the system, whose versions differ from one to the next: from
# Debian 11 with its security updates; what is too old there for the project from the sources of the machine's own Debian.

. "${BASH_SOURCE[0]%/*}/debian-folder.sh"

old_debian_folder=${XDG_CACHE_HOME:-${HOME:-}/.cache}/kovalune/debian11
old_debian_libraries=(zlib1g-dev libpng-dev libjpeg62-turbo-dev libwebp-dev libdeflate-dev libjbig-dev liblzma-dev libzstd-dev)
old_debian_sources=(tiff imath openexr)
old_debian_headers=(libcli11-dev nlohmann-json3-dev libstb-dev)
old_debian_options=(-G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF -DCMAKE_POSITION_INDEPENDENT_CODE=ON
    -DCMAKE_INSTALL_PREFIX=/usr -DBUILD_TESTING=OFF)
# Libraries alone.
declare -A old_debian_options_of=(
    [tiff]="-Dtiff-tools=OFF -Dtiff-tests=OFF -Dtiff-contrib=OFF -Dtiff-docs=OFF -Dcxx=OFF"
    [openexr]="-DOPENEXR_BUILD_TOOLS=OFF -DOPENEXR_INSTALL_TOOLS=OFF -DOPENEXR_INSTALL_EXAMPLES=OFF"
)

old_debian_ready() {
    old_debian_obstacle=
    if [ "$(uname -m)" != x86_64 ]; then
        old_debian_obstacle="this is no x86-64 machine"
    elif [ "$(id -u)" -ne 0 ]; then
        old_debian_obstacle="only root can make and enter a Debian 11 beside this system"
    elif ! unshare --mount --pid --fork true 2>/dev/null; then
        old_debian_obstacle="this root may not mount"
    elif ! ensure_packages clang-16 cmake ninja-build dpkg-dev; then
        old_debian_obstacle="the packages clang-16, cmake, ninja-build and dpkg-dev could not be installed"
    else
        debian_folder_make "$old_debian_folder" "${old_debian_libraries[*]} ${old_debian_sources[*]} ${old_debian_headers[*]}" \
            "a Debian 11 to build the archive for Linux with (about three minutes)" old_debian_fill_folder
        case $? in
        0) ;;
        130) exit 130 ;;
        *) old_debian_obstacle="no Debian 11 could be made in $old_debian_folder" ;;
        esac
    fi
    [ -z "$old_debian_obstacle" ]
}

in_old_debian() {
    local folder
    folder=$(realpath "$1")
    shift
    # shellcheck disable=SC2016 # a script of its own
    unshare --mount --pid --fork --kill-child bash -c '
        root=$1 folder=$2
        shift 2
        mount -t proc proc "$root/proc" && mount --rbind /dev "$root/dev" && mount -t tmpfs tmpfs "$root/tmp" &&
            mkdir -p "$root$folder" && mount --bind -o ro "$folder" "$root$folder" || exit 1
        exec chroot "$root" env -i PATH=/usr/bin:/bin HOME=/tmp LANG=C.UTF-8 "$@" </dev/null
    ' enter "$old_debian_folder" "$folder" "$@"
}

old_debian_fill_folder() {
    local new=$1 release mirror updates
    read -r release mirror < <(debian_release_and_mirror Debian)
    read -r _ updates < <(debian_release_and_mirror Debian-Security)
    if [ -z "${mirror:-}" ] || [ -z "${updates:-}" ]; then
        echo "apt knows no release of Debian, or not its security updates"
        return 1
    fi
    unshare --mount debootstrap --arch=amd64 --variant=minbase bullseye "$new" "$mirror" &&
        printf 'deb %s main\n' "$mirror bullseye" "$mirror bullseye-updates" "$updates bullseye-security" \
            >"$new/etc/apt/sources.list" &&
        old_debian_apt "$new" update && old_debian_apt "$new" upgrade &&
        old_debian_apt "$new" install libc6-dev libstdc++-10-dev "${old_debian_libraries[@]}" &&
        old_debian_links "$new" && old_debian_take_headers "$new" &&
        old_debian_build_sources "$new" "$release" "$mirror" "$updates"
}

old_debian_apt() {
    unshare --mount chroot "$1" env DEBIAN_FRONTEND=noninteractive ${http_proxy:+"http_proxy=$http_proxy"} \
        apt-get -qq -y --no-install-recommends "${@:2}"
}

# Seen from outside, a link that begins at the root would lead out. Of libraries that have a static form none other is left.
old_debian_links() {
    local root=$1 link archive
    while read -r link; do
        ln -sfn --relative "$root$(readlink "$link")" "$link"
    done < <(find "$root/usr/lib/" "$root/usr/lib64/" -type l -lname '/*')
    for archive in "$root"/usr/lib/x86_64-linux-gnu/lib{png,png16,jpeg,webp,z,zstd,deflate,jbig,lzma}.a; do
        test -f "$archive" && rm -f "${archive%.a}.so" || return 1
    done
}

old_debian_take_headers() {
    local root=$1 scratch=$1/tmp/headers package
    mkdir -p "$scratch" && (cd "$scratch" && apt-get -qq -o APT::Sandbox::User=root download "${old_debian_headers[@]}") || return 1
    for package in "$scratch"/*.deb; do
        dpkg-deb -x "$package" "$root" || return 1
    done
    rm -rf "$scratch"
}

# With indexes of its own: the machine's apt need not know sources.
old_debian_build_sources() {
    local root=$1 release=$2 mirror=$3 updates=$4 scratch=$1/tmp/sources name folder more
    local apt=(apt-get -qq -o "Dir::Etc::sourcelist=$scratch/list" -o Dir::Etc::sourceparts=- -o "Dir::State::lists=$scratch/lists"
        -o "Dir::Cache=$scratch/cache" -o APT::Sandbox::User=root)
    mkdir -p "$scratch"/{lists,cache}
    printf 'deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] %s main\n' "$mirror $release" \
        "$updates $release-security" >"$scratch/list"
    export KOVALUNE_DEBIAN11=$root # for the tool chain
    local toolchain=$PWD/cmake/toolchain-debian11.cmake
    "${apt[@]}" update || return 1
    for name in "${old_debian_sources[@]}"; do
        read -ra more <<<"${old_debian_options_of[$name]:-}"
        (cd "$scratch" && "${apt[@]}" source "$name") || return 1
        folder=$(echo "$scratch/$name"-*/)
        cmake -S "$folder" -B "$scratch/build-$name" -DCMAKE_TOOLCHAIN_FILE="$toolchain" "${old_debian_options[@]}" "${more[@]}" &&
            cmake --build "$scratch/build-$name" && DESTDIR=$root cmake --install "$scratch/build-$name" &&
            install -D -m 644 "$folder/debian/copyright" "$root/usr/share/doc/$name/copyright" || return 1
    done
    rm -rf "$scratch"
}
