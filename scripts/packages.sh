# Debian 12 packages, and how missing ones get installed. Sourced by ./test and ./run.

build_packages="g++ cmake ninja-build pkg-config qt6-base-dev qt6-l10n-tools nlohmann-json3-dev libgtest-dev
  libbenchmark-dev libxcb1-dev libxcb-composite0-dev libxcb-damage0-dev libxcb-xfixes0-dev
  libxcb-randr0-dev libxcb-res0-dev libxcb-shape0-dev libxcb-xinput-dev libxcb-xkb-dev libxcb-xtest0-dev
  libxkbcommon-dev libxkbcommon-x11-dev libsm-dev"

run_packages="libqt6svg6 libqt6gui6 dbus-daemon adwaita-icon-theme fonts-dejavu-core"

# A virtual desktop and third-party status items to live in it.
desktop_packages="xvfb openbox picom at-spi2-core x11-xkb-utils x11-xserver-utils xdotool copyq
  diodon gxkb parcellite remmina volumeicon-alsa"

check_packages="clang-format"

# Installs those of the named packages that are missing; ends the script when it may not.
need() {
  if ! command -v dpkg-query >/dev/null 2>&1; then
    echo "This is not Debian: these packages or their like are taken to be there:" $*
    return 0
  fi
  missing=""
  for package in $*; do
    case $(dpkg-query -W -f '${db:Status-Status} ' "$package" 2>/dev/null) in
      *installed*) ;;
      *) missing="$missing $package" ;;
    esac
  done
  if [ -z "$missing" ]; then
    return 0
  fi
  echo "Missing packages:$missing"
  if [ "$(id -u)" != 0 ]; then
    echo "Install them with:  sudo apt-get install --no-install-recommends$missing" >&2
    exit 1
  fi
  export DEBIAN_FRONTEND=noninteractive
  apt-get update
  apt-get install -y --no-install-recommends $missing
}
