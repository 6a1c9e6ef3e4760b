# shellcheck shell=bash
# A Wine prefix that lives as long as the script that sources this:
#   wine_prefix 32|64 FOLDER   makes FOLDER anew, a prefix in FOLDER/prefix, and sets wine to the program that runs others
#   wine_run SECONDS COMMAND   a command with a limit
#   wine_japanese FOLDER       makes sure that LC_ALL=ja_JP.UTF-8 is a locale, in FOLDER if the system has none
#   wine_restart               ends all programs of the prefix; the next one starts with the environment as it is then
#
# Whether there is a screen, and which locale the system has, comes from the environment.

. "${BASH_SOURCE[0]%/*}/wine.sh"

wine_prefix() {
    local folder=$2
    wine_of "$1" "$folder"
    rm -rf "$folder"
    mkdir -p "$folder/home" "$folder/prefix"
    export "${wine_environment[@]}"
    # What another run set for tests of its own.
    unset "${!GTEST_@}"

    # This prefix's own server takes all programs of the prefix with it.
    trap wine_end EXIT
    trap 'exit 130' INT TERM HUP

    # Wine's own server would go with the last program, and a program that starts at that moment fails now and then.
    "$wine_server" -p
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
    "$wine_server" -p
}

wine_end() {
    "$wine_server" -k
    "$wine_server" -w
}
