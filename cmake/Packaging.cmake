# The Debian package, made from the install rules (cmake/Install.cmake) by
# `cpack -G DEB` in the build folder: orvchstrip_<release>_<arch>.deb.
# Its dependencies are computed from the binaries by dpkg-shlibdeps.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvchstrip)
# The release users see (the about panel, the tool's --version), not the
# plug-in's interface version.
set(CPACK_PACKAGE_VERSION ${ORVCHSTRIP_PRODUCT_VERSION})
set(CPACK_PACKAGE_VENDOR "Halvorn Corporation")
set(CPACK_PACKAGE_CONTACT "Orvane Channel Strip developers <orvchstrip@halvorn.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Orvane Channel Strip editor plug-in with its reference host and tool")
# Lines of the control file's description, as apt shows them.
string(CONCAT CPACK_PACKAGE_DESCRIPTION
  "The editor plug-in of the Orvane Channel Strip: a compressor with a\n"
  "side-chain equaliser, a three-band equaliser, a morphing knob that blends\n"
  "stored parameter sets, an output level and meters. It comes with\n"
  "orvchstrip-host, a reference host that shows the editor with meters driven\n"
  "by a model of the strip; orvchstrip-tool, which inspects and converts the\n"
  "plug-in's state, preset and morph data files; and the factory morph sets.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The editor's typeface; the default sans family stands in without it.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-mplus")

include(CPack)
