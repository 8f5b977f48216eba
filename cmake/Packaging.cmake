# cpack (in the build folder) makes velmora_<version>_<arch>.deb: the
# library, its headers and CMake package, the Designer plugin and the
# preview tool, installed under /usr. scripts/package.sh builds it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora)
set(CPACK_PACKAGE_VENDOR "Velmora")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Scales absolutely positioned Qt Widgets forms with the form")
set(CPACK_PACKAGE_DESCRIPTION
    "Drop one VelmoraControl onto a form laid out with absolute positions (a Qt Designer form without layouts, or a form built in code): whenever the form is resized it rescales every other widget relative to the form as designed. With a Qt Designer plugin and the velmora-preview tool.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Velmora developers <velmora@localhost>")
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
# The libraries it runs on, as dpkg-shlibdeps finds them; building against
# it takes Qt's development packages (its CMake package asks for them).
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-base-dev, qt6-tools-dev")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_STRIP_FILES ON)
include(CPack)
