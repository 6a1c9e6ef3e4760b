# shellcheck shell=bash
# A Wine prefix that lives as long as the script that sources this:
#   wine_prefix 32|64 FOLDER   makes FOLDER anew, a prefix in FOLDER/prefix, and sets wine to the program that runs others
#   wine_run SECONDS COMMAND   a command with a limit
#   wine_japanese FOLDER       makes sure that LC_ALL=ja_JP.UTF-8 is a locale, in FOLDER if the system has none
#   wine_restart               ends all programs of the prefix; the next one starts with the environment as it is then
#
# Whether there is a screen, and which locale the system has, comes from the environment.

wine_prefix() {
    local folder=$2
    case "$1" in
    32) wine=/usr/lib/wine/wine server=/usr/lib/wine/wineserver32 ;;
    64) wine=/usr/lib/wine/wine64 server=/usr/lib/wine/wineserver64 ;;
    esac
    rm -rf "$folder"
    mkdir -p "$folder/home" "$folder/prefix"
    export WINESERVER=$server WINEARCH=win$1 WINEPREFIX=$folder/prefix WINEDEBUG=fixme-all HOME=$folder/home
    # What another run set for tests of its own.
    unset "${!GTEST_@}"
    # No offers to install what a browser or .NET needs, no menu entries, no window about a crash.
    export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe,winedbg.exe=d"

    # This prefix's own server takes all programs of the prefix with it.
    trap wine_end EXIT
    trap 'exit 130' INT TERM HUP

    # Wine's own server would go with the last program, and a program that starts at that moment fails now and then.
    "$server" -p
    wine_run 180 "$wine" wineboot --init >"$folder/wineboot.log" 2>&1 || {
        cat "$folder/wineboot.log"
        echo "no Wine prefix could be made"
        exit 1
    }
}

# The system's own locales are left alone.
wine_japanese() {
    if ! locale -a | grep -qix 'ja_JP\.utf-\?8'; then
        export LOCPATH=$1/locale
        mkdir -p "$LOCPATH"
        localedef -i ja_JP -f UTF-8 "$LOCPATH/ja_JP.UTF-8" || exit 1
    fi
}

# In the background, since a trap waits for what runs in the foreground.
wine_run() {
    timeout -k 5 "$@" </dev/null &
    wait $!
}

wine_restart() {
    wine_end
    "$server" -p
}

wine_end() {
    "$server" -k
    "$server" -w
}
