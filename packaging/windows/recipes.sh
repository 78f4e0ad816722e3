#!/usr/bin/env bash
# Builds libraries for Windows from Debian's source packages by recipes. To be sourced by a bash script that sets
#   prefix     the folder to install into
#   sources    a line for each package: its name, the name of its original archive, the archive's SHA-256, and the files
#              beside this one that its recipe uses
# and has a function build_PACKAGE for each, which runs in the unpacked source and installs into $prefix. Such a script
# may set builders to the number of packages to build at a time.

# The folder that holds fetched sources and built libraries, outside the checkout.
# shellcheck disable=SC2034,SC2154
packaging=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
windows_cache=${ROWVANE_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/rowvane/windows}

# as_root COMMAND...
as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# The addresses, releases and components of Debian's own repositories that this machine uses. Not those of security
# updates: not every mirror holds their sources, and each point release takes them over.
debian_repositories() {
  apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' |
    grep -v -e '-security ' | sort -u
}

# Package lists of our own, so that the machine's list of repositories stays as it is.
prepare_source_lists() {
  local apt=$windows_cache/apt repositories
  [ -z "${apt_options:-}" ] || return 0
  repositories=$(debian_repositories)
  if [ -z "$repositories" ]; then
    as_root apt-get update -qq
    repositories=$(debian_repositories)
  fi
  if [ -z "$repositories" ]; then
    echo "No Debian package repository is set up on this machine." >&2
    return 1
  fi
  mkdir -p "$apt/sources" "$apt/state/lists/partial" "$apt/cache/archives/partial"
  sed 's,^,deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] ,' <<<"$repositories" >"$apt/sources/debian.list"
  apt_options=(-qq -o "Dir::Etc::SourceList=/dev/null" -o "Dir::Etc::SourceParts=$apt/sources"
    -o "Dir::State=$apt/state" -o "Dir::Cache=$apt/cache" -o "APT::Sandbox::User=$(id -un)")
  flock "$apt" apt-get "${apt_options[@]}" update
}

# fetch_source PACKAGE ORIGINAL_TAR SHA256 FOLDER
# Unpacks the source package, with Debian's patches, as FOLDER. Fails when the original archive is not the expected
# one: another version needs its recipe looked at.
fetch_source() {
  local package=$1 tar=$2 sha256=$3 folder=$4 download=$windows_cache/download/$1
  prepare_source_lists || return 1
  rm -rf "$download" "$folder"
  mkdir -p "$download" "$(dirname "$folder")"
  (cd "$download" && flock "$windows_cache/apt" apt-get "${apt_options[@]}" source --only-source --download-only "$package") ||
    return 1
  if ! (cd "$download" && sha256sum --quiet --check - <<<"$sha256  $tar"); then
    echo "The source package $package does not hold the expected $tar." >&2
    return 1
  fi
  dpkg-source --no-check --no-copy -x "$download"/*.dsc "$folder" >"$download/unpack.log" 2>&1 || { cat "$download/unpack.log" >&2; return 1; }
  rm -rf "$download"
}

host=x86_64-w64-mingw32

# cmake_build OPTION...: configures the source in build-windows.
cmake_build() {
  cmake -S . -B build-windows -G Ninja -DCMAKE_TOOLCHAIN_FILE="$packaging/toolchain.cmake" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache \
    -DCMAKE_INSTALL_PREFIX="$prefix" -DBUILD_SHARED_LIBS=OFF "$@"
}

# fingerprint PACKAGE ORIGINAL_TAR SHA256 FILE...: what a built library depends on, its source, its recipe and the compiler.
fingerprint() {
  local package=$1 sha256=$3 files=("${@:4}")
  {
    echo "$sha256 $compiler_version"
    declare -f "build_$package" cmake_build
    (cd "$packaging" && cat toolchain.cmake "${files[@]}")
  } | sha256sum | cut -d ' ' -f 1
}

# is_built PACKAGE ORIGINAL_TAR SHA256 FILE...
is_built() {
  local stamp=$prefix/built/$1
  [ -f "$stamp" ] && [ "$(<"$stamp")" = "$(fingerprint "$@")" ]
}

# build PACKAGE ORIGINAL_TAR SHA256 FILE...
build() {
  local package=$1 tar=$2 sha256=$3 log=$windows_cache/log/$1.log stamp=$prefix/built/$1 wanted status
  wanted=$(fingerprint "$@")
  echo "Building $package for Windows"
  mkdir -p "$(dirname "$log")"
  rm -f "$stamp"
  fetch_source "$package" "$tar" "$sha256" "$windows_cache/build/$package"
  # In a condition the shell would not stop at the first command of a recipe that fails.
  set +e
  (set -e; cd "$windows_cache/build/$package"; "build_$package") >"$log" 2>&1 </dev/null
  status=$?
  set -e
  if [ $status -ne 0 ]; then
    tail -n 30 "$log" >&2
    echo "$package could not be built; the log is $log" >&2
    return 1
  fi
  rm -rf "${windows_cache:?}/build/$package"
  mkdir -p "$(dirname "$stamp")"
  echo "$wanted" >"$stamp"
}

# Builds what is not built yet. Only one script does so at a time: two checkouts may share the cache.
build_all() {
  local line running=0 failed=0
  mkdir -p "$windows_cache"
  exec 9>"$prefix.lock"
  flock 9
  compiler_version=$($host-g++-posix -dumpfullversion)
  for line in "${sources[@]}"; do
    # shellcheck disable=SC2086
    is_built $line && continue
    prepare_source_lists
    # shellcheck disable=SC2086
    build $line &
    running=$((running + 1))
    if [ $running -ge "${builders:-$(nproc)}" ]; then
      wait -n || failed=1
      running=$((running - 1))
    fi
    [ $failed -eq 0 ] || break
  done
  while [ $running -gt 0 ]; do
    wait -n || failed=1
    running=$((running - 1))
  done
  return $failed
}
