# Runs what was built for Windows under Wine. Sourced by scripts that stand at the project's root; needs packages.sh.
#
#   wine_suite 32 build/win32       runs the programs of wine_programs, built there before, and sets wine_passed, wine_failed
#                                   and wine_skipped; where no Wine can be had it says so and counts one test as skipped, or
#                                   with CI=true as failed
#   wine_ready 32                   whether there is a Wine of this width, made if it has to be; else wine_obstacle says why
#   in_wine 32 build/win32 COMMAND  runs a command on the system with that Wine: this project and the build folder are in
#                                   their places there
#
# 64 bits take Debian's wine64. 32 bits take an installed wine32, or else a small 32-bit Debian in a folder of its own,
# which needs root to be made and entered: a foreign architecture would change the whole machine. The folder also has
# what a window in Japanese needs: locale, font and a display in memory.

wine32_folder=${XDG_CACHE_HOME:-$HOME/.cache}/kovalune/wine32
wine_screen_packages="locales fonts-vlgothic fonts-wine xvfb xauth"
wine32_packages="wine32 $wine_screen_packages"

# Each is a target too. No more of them than say something of Windows: each costs a build. frames_tests compares all
# pictures, with the code linked in and with the plug-in's file loaded.
wine_programs="frames_tests faults_tests platform_tests load_tests frame_tests params_tests"
wine_programs_each="frame_tests params_tests"        # whose tests need a process each
wine_programs_japanese="platform_tests params_tests" # with names in code page 932, of which a byte may look like '\'
wine_window_programs="dialog_tests show_dialog" # these need a screen; the targets of wine-dialogs
wine_seconds=400 # a program may take; up to forty are usual

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
            ensure_packages $wine_screen_packages ||
                wine_obstacle="the packages $wine_screen_packages could not be installed"
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

# Makes the folder unless it is there and as today's script makes it. It has its name only when it is complete.
wine32_make_folder() (
    trap 'exit 130' INT TERM HUP
    mkdir -p "${wine32_folder%/*}"
    exec {lock}>"$wine32_folder.lock"
    flock "$lock"
    if [ "$(cat "$wine32_folder/etc/kovalune" 2>/dev/null)" = "$wine32_packages" ]; then
        exit 0
    fi
    local log=$wine32_folder.log new=$wine32_folder.new
    echo "Making a 32-bit Debian with Wine in $wine32_folder, once: about two minutes"
    ensure_packages debootstrap || exit 1
    rm -rf --one-file-system "$wine32_folder" "$new"
    if ! wine32_fill_folder "$new" >"$log" 2>&1; then
        tail -n 20 "$log"
        rm -rf --one-file-system "$new"
        exit 1
    fi
    mv "$new" "$wine32_folder"
)

wine32_fill_folder() {
    local release mirror
    if [ -z "$(debian_release_and_mirror)" ]; then
        apt-get update -qq
    fi
    read -r release mirror < <(debian_release_and_mirror)
    if [ -z "${mirror:-}" ]; then
        echo "apt knows no release of Debian"
        return 1
    fi
    eval "$(apt-config shell http_proxy Acquire::http::Proxy)"
    export http_proxy
    # What is mounted in the new system while it is made is seen by these processes alone.
    unshare --mount debootstrap --arch=i386 --variant=minbase \
        --include="${wine32_packages// /,}" "$release" "$1" "$mirror" &&
        chroot "$1" localedef -i ja_JP -f UTF-8 ja_JP.UTF-8 &&
        rm -f "$1"/var/cache/apt/archives/*.deb &&
        echo "$wine32_packages" >"$1/etc/kovalune"
}

# The machine's own Debian and where apt takes it from.
debian_release_and_mirror() {
    apt-get indextargets --format '$(CODENAME) $(REPO_URI)' 'Created-By: Packages' 'Origin: Debian' 'Label: Debian' \
        'Component: main' | grep -v -m 1 '^[a-z]*-'
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

# The mounts are in a namespace of the command's own and end with it, and so do all processes: --kill-child ends the
# first of them when unshare itself is ended, however that happens.
in_wine32_folder() {
    unshare --mount --pid --fork --kill-child bash -c '
        trap "exit 130" INT TERM HUP
        root=$1 project=$2 build=$3
        shift 3
        mount -t proc proc "$root/proc" && mount --rbind /dev "$root/dev" && mount -t tmpfs tmpfs "$root/tmp" || exit 1
        for folder in "$project" "$build"; do
            mkdir -p "$root$folder" && mount --bind "$folder" "$root$folder" || exit 1
        done
        chroot "$root" env -i --chdir="$project" PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 "$@" </dev/null &
        wait $!
    ' enter "$wine32_folder" "$PWD" "$@"
}

wine_suite() {
    local bits=$1 build=$2 program log runs=()
    wine_passed=0
    wine_failed=0
    wine_skipped=0
    echo "== Windows, $bits bits, under Wine: run"
    if ! wine_ready "$bits"; then
        wine_not_tested "the $bits-bit plug-in for Windows was not run"
        return
    fi
    build=$(realpath "$build")
    for program in $wine_programs; do
        case " $wine_programs_japanese " in *" $program "*) runs+=(--japanese) ;; esac
        case " $wine_programs_each " in *" $program "*) runs+=(--each) ;; esac
        runs+=("$program" "$wine_seconds")
    done
    in_wine "$bits" "$build" "$PWD/scripts/lib/wine-run" "$bits" "$build" "${runs[@]}"
    case $? in
    0) ;;
    130) exit 130 ;;
    *)
        echo "FAILED: Wine of $bits bits does not start"
        wine_failed=1
        return
        ;;
    esac
    for program in $wine_programs; do
        wine_count "$build/wine/$program.log"
    done
    if ! wine_screen_ready "$bits"; then
        wine_not_tested "the $bits-bit plug-in's dialog was not shown"
    elif in_wine "$bits" "$build" "$PWD/scripts/lib/wine-dialogs" "$bits" "$build" tests; then
        for log in "$build"/wine-dialogs/dialog_tests-*.log; do
            wine_count "$log"
        done
    else
        echo "FAILED: Wine of $bits bits shows no windows"
        wine_failed=$((wine_failed + 1))
    fi
    echo "Windows, $bits bits: $wine_passed passed, $wine_failed failed, $wine_skipped skipped"
}

# Says it loudly; with CI=true it is a failure.
wine_not_tested() {
    echo "NOT TESTED: $1: $wine_obstacle" >&2
    if [ "${CI:-}" = true ]; then
        wine_failed=$((wine_failed + 1))
    else
        wine_skipped=$((wine_skipped + 1))
    fi
}

# Adds what a program says of its tests. One that ends too early, or with a failure that no test reports, is one more.
wine_count() {
    local text ok bad skips
    text=$(tr -d '\r' <"$1")
    ok=$(sed -nE 's/^\[  PASSED  \] ([0-9]+) tests?\.$/\1/p' <<<"$text")
    bad=$(sed -nE 's/^\[  FAILED  \] ([0-9]+) tests?, listed below:$/\1/p' <<<"$text")
    skips=$(sed -nE 's/^\[  SKIPPED \] ([0-9]+) tests?, listed below:$/\1/p' <<<"$text")
    if ! grep -aqE '^\[==========\] [1-9][0-9]* tests? from .* ran\.' <<<"$text"; then
        ok=$(grep -ac '^\[       OK \] ' <<<"$text")
        bad=$(($(grep -acE '^\[  FAILED  \] .* \([0-9]+ ms\)$' <<<"$text") + 1))
    elif [ -z "$bad" ] && ! grep -aqx 'exit code 0' <<<"$text"; then
        bad=1
    fi
    if [ -n "$bad" ]; then
        cat <<<"$text"
        echo "FAILED: ${1##*/} above"
    fi
    # Nothing that these programs test is missing under Wine.
    if [ "${CI:-}" = true ] && [ -n "$skips" ]; then
        cat <<<"$text"
        echo "FAILED: ${1##*/} above skips tests"
        bad=$((${bad:-0} + skips))
        skips=
    fi
    wine_passed=$((wine_passed + ${ok:-0}))
    wine_failed=$((wine_failed + ${bad:-0}))
    wine_skipped=$((wine_skipped + ${skips:-0}))
}
