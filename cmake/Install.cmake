# Installation into the usual places of a Linux system, and the Debian package made from it.
include(GNUInstallDirs)

# The programs find the starter tool library and the shipped post-processors in
# ../share/isolith/ from their own folder.
set(ISOLITH_SHARE_DIR ${CMAKE_INSTALL_DATADIR}/isolith)

if(TARGET isolith-cli)
  install(TARGETS isolith-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${PROJECT_SOURCE_DIR}/data/isolith-cli.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
if(TARGET isolith)
  install(TARGETS isolith RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${PROJECT_SOURCE_DIR}/data/desktop/isolith.desktop
          DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${PROJECT_SOURCE_DIR}/data/desktop/isolith.svg
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
endif()
install(FILES ${PROJECT_SOURCE_DIR}/data/Isolith.too DESTINATION ${ISOLITH_SHARE_DIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/postprocessors DESTINATION ${ISOLITH_SHARE_DIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME isolith)
set(CPACK_PACKAGE_VENDOR "Isolith")
set(CPACK_PACKAGE_CONTACT "Isolith developers <isolith@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "Isolation milling of printed circuits: from Gerber and Excellon files to machine files")
set(CPACK_PACKAGE_INSTALL_DIRECTORY isolith)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
# The shared libraries the programs link (Qt, the C++ run-time) become the package's depends.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The tool bar's icons are SVG files: Qt draws them through a plugin that nothing links.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6")
set(CPACK_STRIP_FILES ON)
include(CPack)
