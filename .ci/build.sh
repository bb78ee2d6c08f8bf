# Sourced by run, test and .ci/run: what they share. Runs in the folder of the checkout.

# install_packages GROUP...: installs the packages of these groups of .ci/packages that are missing, in one call.
install_packages() {
  local missing=() package group
  while read -r group package; do
    case " $* " in
      *" $group "*)
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package") ;;
    esac
  done < <(grep -v '^#' .ci/packages)
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "installing ${missing[*]}" >&2
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  local log
  log=$(mktemp)
  if ! { "${as_root[@]}" apt-get update -qq &&
         "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
           apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    return 1
  fi
  rm -f "$log"
}

# build PRESET [TARGET]: configures when needed and builds; shows the compiler's output only when something fails.
build() {
  local log=build/$1.log
  mkdir -p build
  if [ ! -f "build/$1/build.ninja" ]; then
    echo "configuring and building ($1); the first time takes a few minutes" >&2
    cmake --preset "$1" >"$log" 2>&1 || { cat "$log" >&2; return 1; }
  fi
  cmake --build --preset "$1" ${2:+--target "$2"} >"$log" 2>&1 || { cat "$log" >&2; return 1; }
}

# start_wine: makes the Windows of the build tree on its first use; programs that start together would each try to.
start_wine() {
  cmake/wine wineboot --init >build/wine.log 2>&1 || { cat build/wine.log >&2; return 1; }
}
