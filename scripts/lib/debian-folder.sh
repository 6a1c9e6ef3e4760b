# shellcheck shell=bash
# A small Debian in a folder of its own, where the machine's own would have to be changed, or is too new. Sourced by scripts
# that stand at the project's root; needs packages.sh.
#
#   debian_folder_make FOLDER MARK WHAT FILL   makes FOLDER unless it is there with this MARK in etc/kovalune: FILL NEW fills a
#                                              new folder, WHAT says what it is and how long that takes. 130 where it was
#                                              interrupted
#   debian_release_and_mirror Debian           the machine's own Debian and where apt takes it from; Debian-Security: the same
#                                              of its security updates

# It has its name only when it is complete.
debian_folder_make() (
    local folder=$1 mark=$2 what=$3 fill=$4 log=$1.log new=$1.new
    trap 'exit 130' INT TERM HUP
    mkdir -p "${folder%/*}"
    exec {lock}>"$folder.lock"
    flock "$lock"
    if [ "$(cat "$folder/etc/kovalune" 2>/dev/null)" = "$mark" ]; then
        exit 0
    fi
    echo "Making $what in $folder, once"
    ensure_packages debootstrap debian-archive-keyring || exit 1
    if [ -z "$(debian_release_and_mirror Debian)" ]; then
        apt-get update -qq
    fi
    eval "$(apt-config shell http_proxy Acquire::http::Proxy)"
    export http_proxy
    rm -rf --one-file-system "$folder" "$new"
    if ! "$fill" "$new" >"$log" 2>&1; then
        tail -n 20 "$log"
        rm -rf --one-file-system "$new"
        exit 1
    fi
    rm -f "$new"/var/cache/apt/archives/*.deb
    echo "$mark" >"$new/etc/kovalune"
    mv "$new" "$folder"
)

debian_release_and_mirror() {
    # shellcheck disable=SC2016 # apt puts in the names
    apt-get indextargets --format '$(CODENAME) $(REPO_URI)' 'Created-By: Packages' 'Origin: Debian' "Label: $1" \
        'Component: main' | grep -v -m 1 -E '^[a-z]*-(updates|backports|proposed-updates) '
}
