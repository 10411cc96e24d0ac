# For Nix: nix-build -E '(import <nixpkgs> {}).callPackage ./Resources/package/karvo.nix {}'.
# Not run yet: the names of the packages have been written from memory. NixOS needs in addition
# `security.pam.services.karvo = {};` and `systemd.packages = [ karvo ];`.
{ lib, stdenv, cmake, ninja, pkg-config, wayland-scanner, qt6, librsvg, curl, expat, fmt, glib, icu
, libplist, libpulseaudio, libsodium, libxkbcommon, nlohmann_json, pam, speechd, systemd, wayland
, wayland-protocols, xorg, xcb-util-cursor }:

stdenv.mkDerivation {
  pname = "karvo";
  version = "0.1.0";
  src = lib.cleanSource ../..;

  nativeBuildInputs = [ cmake librsvg ninja pkg-config qt6.wrapQtAppsHook wayland-scanner ];
  buildInputs = [
    curl expat fmt glib icu libplist libpulseaudio libsodium libxkbcommon nlohmann_json pam speechd
    systemd wayland wayland-protocols qt6.qtbase qt6.qtwayland xcb-util-cursor xorg.libxcb
    xorg.xcbutilkeysyms xorg.xcbutilrenderutil
  ];
  # The build needs folders that are relative to the prefix.
  cmakeFlags = [
    "-DCMAKE_BUILD_TYPE=RelWithDebInfo" "-DKARVO_TESTS=OFF"
    "-DCMAKE_INSTALL_BINDIR=bin" "-DCMAKE_INSTALL_LIBEXECDIR=libexec"
    "-DCMAKE_INSTALL_DATADIR=share" "-DCMAKE_INSTALL_MANDIR=share/man"
  ];

  meta = {
    description = "Privacy utility for X11 and Wayland desktops";
    homepage = "https://www.example.com/karvo/";
    license = lib.licenses.unfree;
    platforms = lib.platforms.linux;
    mainProgram = "karvo";
  };
}
