# The Debian package. To build it, run `scripts/package`, or `cpack` in a build tree whose prefix is
# /usr.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME autoreport)
set(CPACK_PACKAGE_VENDOR "AutoReport")
set(CPACK_PACKAGE_CONTACT "AutoReport maintainers <maintainers@autoreport.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "automatic attendance reports")
set(CPACK_PACKAGE_DESCRIPTION
  "Makes the attendance reports of many customers: reads each customer's
database at the time that the customer chose, writes workbooks, and queues
them as mail. Contains commands for operators, and a systemd unit that is
disabled by default.")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION database)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# These dependencies are not libraries that the program links: the database driver, and the databases
# of MIME types and time zones. Qt loads them at run time.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt5sql5-mysql, shared-mime-info, tzdata")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "mariadb-server")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
  ${PROJECT_SOURCE_DIR}/packaging/debian/postinst
  ${PROJECT_SOURCE_DIR}/packaging/debian/postrm
  ${PROJECT_SOURCE_DIR}/packaging/debian/prerm)
autoreport_install_compressed(packaging/debian/changelog ${CMAKE_INSTALL_DOCDIR} changelog.gz)
include(CPack)
