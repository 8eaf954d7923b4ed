# What `cmake --install` puts where, relative to the installation prefix:
#
#   bin/orvchstrip-host, bin/orvchstrip-tool
#   <libdir>/orvchstrip/orvchstrip.so         the plug-in, in a folder of its own
#                                             (libdir: lib/<multiarch> on Debian)
#   <Qt's plug-in folder>/designer/           the Designer plug-in, when built
#   share/Halvorn/ORVD/                       the factory morph sets (the .ord records)
#   share/man/man1/                           the two man pages, made with help2man
#   share/applications/, share/icons/hicolor/ the host's desktop entry and icon
#   share/bash-completion/completions/        the tool's command completion
#
# Nothing installed refers to the build tree: the host finds the plug-in by a
# path relative to its own folder, and the morph sets are found through the
# XDG data directories.

# Debian keeps architecture-dependent files in the multiarch library folder
# (lib/x86_64-linux-gnu) below any prefix; GNUInstallDirs chooses it only for
# /usr. Plug-ins directly below lib/ would also make the package run ldconfig.
# (Qt's packages have included GNUInstallDirs already, so its plain "lib" is
# replaced; any other choice is kept.)
if(CMAKE_LIBRARY_ARCHITECTURE AND EXISTS /etc/debian_version
   AND (NOT DEFINED CMAKE_INSTALL_LIBDIR OR CMAKE_INSTALL_LIBDIR STREQUAL "lib"))
  set(CMAKE_INSTALL_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE} CACHE PATH "Object code libraries (LIBDIR)" FORCE)
endif()
include(GNUInstallDirs)

set(ORV_PLUGIN_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/orvchstrip)
file(RELATIVE_PATH orv_plugin_dir_from_host ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/orvchstrip)
set_source_files_properties(host/PluginHost.cpp DIRECTORY host
  PROPERTIES COMPILE_DEFINITIONS ORV_INSTALLED_PLUGIN_DIR="${orv_plugin_dir_from_host}")

install(TARGETS orvchstrip-host orvchstrip-tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS orvchstrip LIBRARY DESTINATION ${ORV_PLUGIN_INSTALL_DIR})
if(TARGET orvchstrip_designer)
  # Qt's own plug-in folder below the prefix: Designer finds the plug-in there
  # when the prefix is Qt's (/usr), otherwise through QT_PLUGIN_PATH.
  install(TARGETS orvchstrip_designer LIBRARY DESTINATION ${QT6_INSTALL_PLUGINS}/designer)
endif()

# The factory sets go where the editor and the tool look for the machine-wide
# morph folder; their JSON tables stay in the source tree.
install(DIRECTORY presets/morph/ DESTINATION ${CMAKE_INSTALL_DATADIR}/Halvorn/ORVD
  FILES_MATCHING PATTERN "*.ord")

install(FILES packaging/orvchstrip-host.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/orvchstrip.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES packaging/orvchstrip-tool.bash-completion
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME orvchstrip-tool)

# The man pages are made from each program's --help at build time, so they
# list the options the programs take; the sections --help lacks (files,
# environment) come from packaging/*.h2m.in.
# (The fuzzing build installs nothing and goes without.)
find_program(HELP2MAN help2man)
if(NOT HELP2MAN AND NOT ORV_BUILD_FUZZERS)
  message(FATAL_ERROR "help2man not found: it makes the man pages (Debian package help2man; scripts/setup.sh "
                      "installs it)")
endif()
if(HELP2MAN)
  set(orv_man_pages)
  function(orv_add_man_page program summary)
    set(page ${CMAKE_BINARY_DIR}/man/${program}.1)
    configure_file(packaging/${program}.h2m.in ${CMAKE_BINARY_DIR}/man/${program}.h2m @ONLY)
    add_custom_command(OUTPUT ${page}.gz
      COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0
              ${HELP2MAN} --no-info --section=1 --name=${summary}
              --version-string=${ORVCHSTRIP_PRODUCT_VERSION} "--source=Orvane Channel Strip"
              --include=${CMAKE_BINARY_DIR}/man/${program}.h2m --output=${page} $<TARGET_FILE:${program}>
      COMMAND gzip -9nf ${page}
      DEPENDS ${program} ${CMAKE_BINARY_DIR}/man/${program}.h2m
      COMMENT "Writing the man page of ${program}"
      VERBATIM)
    set(orv_man_pages ${orv_man_pages} ${page}.gz PARENT_SCOPE)
  endfunction()
  orv_add_man_page(orvchstrip-host "reference host of the Orvane Channel Strip editor")
  orv_add_man_page(orvchstrip-tool "inspect and convert the files of the Orvane Channel Strip")
  add_custom_target(orv_man_pages ALL DEPENDS ${orv_man_pages})
  install(FILES ${orv_man_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
