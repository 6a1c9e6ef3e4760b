# shellcheck shell=bash
# Where the Wine comes from that runs what was built for Windows. Sourced by scripts that stand at the project's root; needs
# packages.sh to make one ready.
#
#   wine_ready 32                   whether there is a Wine of this width, made if it has to be; else wine_obstacle says why
#   wine_screen_ready 32            the same for what windows need
#   in_wine 32 build/win32 COMMAND  runs a command on the system with that Wine: this project and the build folder are in
#                                   their places there
#   wine_of 32 FOLDER               sets wine and wine_server to the programs, and wine_environment to the variables with
#                                   which they use FOLDER/prefix and FOLDER/home
#
# 64 bits take Debian's wine64. 32 bits take an installed wine32, or else a small 32-bit Debian in a folder of its own,
# which needs root to be made and entered: a foreign architecture would change the whole machine. The folder also has
# what a window in Japanese needs: locale, font and a display in memory.

. "${BASH_SOURCE[0]%/*}/debian-folder.sh"

wine32_folder=${XDG_CACHE_HOME:-${HOME:-}/.cache}/kovalune/wine32 # in that folder itself there is no home
wine_screen_packages=(locales fonts-vlgothic fonts-wine xvfb xauth)
wine32_packages=(wine32 "${wine_screen_packages[@]}")

declare -A wine_obstacles=() # what became of either width when it was first asked for
declare -A wine_screen_obstacles=()

# Makes a Wine of 32 or 64 bits ready; where it cannot, says why in wine_obstacle. Tries once.
wine_ready() {
    if [ -z "${wine_obstacles[$1]+tried}" ]; then
        wine_make_ready "$1"
        wine_obstacles[$1]=$wine_obstacle
    fi
    wine_obstacle=${wine_obstacles[$1]}
    [ -z "$wine_obstacle" ]
}

# The same for what windows need beside it. The folder has it already.
wine_screen_ready() {
    if [ -z "${wine_screen_obstacles[$1]+tried}" ]; then
        wine_obstacle=
        if [ "$1" -eq 64 ] || [ -x /usr/lib/wine/wine ]; then
            ensure_packages "${wine_screen_packages[@]}" ||
                wine_obstacle="the packages ${wine_screen_packages[*]} could not be installed"
        fi
        wine_screen_obstacles[$1]=$wine_obstacle
    fi
    wine_obstacle=${wine_screen_obstacles[$1]}
    [ -z "$wine_obstacle" ]
}

wine_make_ready() {
    wine_obstacle=
    if [ "$(uname -m)" != x86_64 ]; then
        wine_obstacle="this is no x86-64 machine"
    elif [ "$1" -eq 64 ]; then
        ensure_packages wine64 locales || wine_obstacle="the packages wine64 and locales could not be installed"
    elif [ ! -x /usr/lib/wine/wine ]; then
        wine32_folder_ready
    fi
}

wine32_folder_ready() {
    if [ "$(id -u)" -ne 0 ]; then
        wine_obstacle="the package wine32 is not installed, and only root can make and enter a 32-bit system beside this one"
    elif ! unshare --mount --pid --fork true 2>/dev/null; then
        wine_obstacle="the package wine32 is not installed, and this root may not mount"
    else
        wine32_make_folder
        case $? in
        0) ;;
        130) exit 130 ;;
        *) wine_obstacle="no 32-bit system could be made in $wine32_folder" ;;
        esac
    fi
}

wine32_make_folder() {
    debian_folder_make "$wine32_folder" "${wine32_packages[*]}" "a 32-bit Debian with Wine (about two minutes)" wine32_fill_folder
}

wine32_fill_folder() {
    local release mirror
    read -r release mirror < <(debian_release_and_mirror Debian)
    if [ -z "${mirror:-}" ]; then
        echo "apt knows no release of Debian"
        return 1
    fi
    # What is mounted in the new system while it is made is seen by these processes alone.
    unshare --mount debootstrap --arch=i386 --variant=minbase \
        --include="$(IFS=,; echo "${wine32_packages[*]}")" "$release" "$1" "$mirror" &&
        chroot "$1" localedef -i ja_JP -f UTF-8 ja_JP.UTF-8
}

# shellcheck disable=SC2034 # for those who source this
wine_of() {
    wine=/usr/lib/wine/wine64
    wine_server=/usr/lib/wine/wineserver64
    if [ "$1" -eq 32 ]; then
        wine=/usr/lib/wine/wine
        wine_server=/usr/lib/wine/wineserver32
    fi
    wine_environment=("WINESERVER=$wine_server" "WINEARCH=win$1" "WINEPREFIX=$2/prefix" "HOME=$2/home" WINEDEBUG=fixme-all
        # No offers to install what a browser or .NET needs, no menu entries, no window about a crash.
        "WINEDLLOVERRIDES=mscoree,mshtml=;winemenubuilder.exe,winedbg.exe=d")
}

in_wine() {
    local bits=$1 build
    build=$(realpath "$2")
    shift 2
    if [ "$bits" -eq 64 ] || [ -x /usr/lib/wine/wine ]; then
        "$@"
    else
        in_wine32_folder "$build" "$@"
    fi
}

# Begins a script of its own, `bash -c "$wine32_mounts"... enter ROOT PROJECT BUILD ARGUMENT...`, in a namespace for mounts and
# processes: the mounts end with it, and so do all processes, since --kill-child ends the first of them when unshare itself is
# ended, however that happens.
# shellcheck disable=SC2016
wine32_mounts='
    root=$1 project=$2 build=$3
    shift 3
    mount -t proc proc "$root/proc" && mount --rbind /dev "$root/dev" && mount -t tmpfs tmpfs "$root/tmp" || exit 1
    for folder in "$project" "$build"; do
        mkdir -p "$root$folder" && mount --bind "$folder" "$root$folder" || exit 1
    done
'

in_wine32_folder() {
    # shellcheck disable=SC2016 # a script of its own
    unshare --mount --pid --fork --kill-child bash -c "$wine32_mounts"'
        trap "exit 130" INT TERM HUP
        chroot "$root" env -i --chdir="$project" PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 "$@" </dev/null &
        wait $!
    ' enter "$wine32_folder" "$PWD" "$@"
}
