# Shared by the scripts in this folder: where the tree is, stage banners and
# installing Debian packages only when they are missing.
#
# Source it: . "$(dirname "$0")/lib.sh"

QUILLON_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# What a native build with its tests needs (qpm uses CLI11 and nlohmann/json;
# the release preset builds the benchmarks).
QUILLON_NATIVE_PACKAGES=(cmake ninja-build g++ googletest libgtest-dev libgmock-dev
  libbenchmark-dev libcli11-dev nlohmann-json3-dev python3 python3-jsonschema)
# The example's Cortex-M target.
QUILLON_FIRMWARE_PACKAGES=(gcc-arm-none-eabi libnewlib-arm-none-eabi binutils-arm-none-eabi)
# Sanitizers and fuzzing with clang, the Windows cross builds and Wine; a
# virtual display and the screenshot tools for the dialogs under Wine.
QUILLON_EXTRA_PACKAGES=(clang libclang-rt-14-dev g++-mingw-w64-x86-64-posix
  g++-mingw-w64-i686-posix binutils-mingw-w64-i686 binutils-mingw-w64-x86-64 wine64
  xvfb x11-apps imagemagick)

stage() {
  printf '\n==== %s ====\n' "$*"
}

package_installed() {
  [[ $(dpkg-query -W -f='${Status}' "$1" 2>/dev/null) == "install ok installed" ]]
}

# Installs the named packages that are not installed yet. The package lists
# are refreshed only when something is missing, so a ready machine pays
# nothing.
ensure_packages() {
  local missing=() package
  for package in "$@"; do
    package_installed "$package" || missing+=("$package")
  done
  [[ ${#missing[@]} -eq 0 ]] && return 0

  local sudo=()
  if [[ $(id -u) -ne 0 ]]; then
    if ! command -v sudo >/dev/null; then
      echo "missing packages, and not root: ${missing[*]}" >&2
      return 1
    fi
    sudo=(sudo)
  fi
  echo "installing: ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  "${sudo[@]}" apt-get update -q &&
    "${sudo[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
}
