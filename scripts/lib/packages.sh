# shellcheck shell=bash disable=SC2034
# Installs Debian packages that are missing, as root or through sudo, and says what it does. Sourced by the scripts.

build_packages=(g++ cmake ninja-build libpng-dev libtiff-dev libopenexr-dev libwebp-dev libjpeg-dev libstb-dev nlohmann-json3-dev libcli11-dev)
room_packages=("${build_packages[@]}" libgtest-dev)
# Two thread models: one for what ships, one for the tests.
windows_packages=(g++-mingw-w64-{i686,x86-64}-{win32,posix})
package_packages=(zip dpkg-dev file)
farm_packages=(slurmctld slurmd slurm-client munge)
lint_packages=(clang-format clang-tidy shellcheck codespell)
# What scripts/page builds with; node, where there is none, is for it too.
page_packages=(cmake ninja-build emscripten libstb-dev nlohmann-json3-dev node-typescript esbuild)
# What scripts/test-hosts renders through.
host_packages=(melt)
test_packages=("${room_packages[@]}" clang libclang-rt-14-dev locales binutils imagemagick time "${windows_packages[@]}" googletest
    "${package_packages[@]}" unzip "${lint_packages[@]}" zsh fish ffmpeg)

ensure_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done
    if [ ${#missing[@]} -eq 0 ]; then
        return 0
    fi
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing packages: ${missing[*]}. Install them, or run this as root or where sudo is." >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing missing packages: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" \
        >/dev/null
}
