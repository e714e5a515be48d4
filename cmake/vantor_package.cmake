# The Debian package: scripts/package runs cpack on the build tree. Everything installs under /usr
# (bin/, lib/vantor/, share/vantor/res/<lang>/); the programs and libraries find each other through
# RUNPATHs relative to their own folder, so the same files also run from any other root.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantor-rules)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Vantor")
set(CPACK_PACKAGE_CONTACT "Vantor assembly rules maintainers <maintainers@vantor.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "assembly rule module and rule-set editor")
set(CPACK_PACKAGE_DESCRIPTION
    "The assembly rule module of a design-for-manufacturability checker: twelve configurable\n\
rules for fasteners, holes, slots, clearances, contact materials and preferred components,\n\
their dialogs and databases, the rule-set editor (vantor-rules) and the command line that\n\
lists, checks, converts and saves settings documents.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
# Dependencies as dpkg-shlibdeps finds them from the libraries the programs and modules link.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS OFF)
# Qt loads its platform plugins at run time, so no linked library names them.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
execute_process(COMMAND dpkg --print-architecture
    OUTPUT_VARIABLE VANTOR_DEB_ARCH OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(NOT VANTOR_DEB_ARCH)
    set(VANTOR_DEB_ARCH amd64)
endif()
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${VANTOR_DEB_ARCH})
set(CPACK_DEBIAN_FILE_NAME "vantor-rules_${PROJECT_VERSION}_${VANTOR_DEB_ARCH}.deb")
include(CPack)
