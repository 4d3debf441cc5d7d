# Debian packages: "cpack --config BUILD/CPackConfig.cmake" writes them to
# BUILD/packages. Set WIFICONFD_MAINTAINER to your own name and address first.
set(WIFICONFD_MAINTAINER "wificonfd maintainers <maintainers@wificonfd.example>" CACHE STRING
  "name and address in the packages")
set(packages wificonfd wificonf gwbox)

# The changelog is written by hand, so its version is compared with the project's.
file(STRINGS debian/changelog changelog_entry LIMIT_COUNT 1)
if(NOT changelog_entry MATCHES "^wificonfd \\(${PROJECT_VERSION}\\) ")
  message(FATAL_ERROR "packaging/debian/changelog begins with \"${changelog_entry}\", "
    "the project has version ${PROJECT_VERSION}")
endif()
find_program(GZIP gzip REQUIRED)
set(changelog ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS debian/changelog)
execute_process(COMMAND ${GZIP} -9nc ${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog
  OUTPUT_FILE ${changelog} COMMAND_ERROR_IS_FATAL ANY)
foreach(package IN LISTS packages)
  install(FILES debian/copyright ${changelog}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${package})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL ${packages})
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
# With DESTDIR, so that installed files contain their final paths.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/prepare_packages.cmake)

set(CPACK_PACKAGE_CONTACT "${WIFICONFD_MAINTAINER}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
foreach(package IN LISTS packages)
  string(TOUPPER ${package} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
endforeach()

# Each package has its own first line; the project's would be put before it.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_COMPONENT_WIFICONFD_DESCRIPTION "Wi-Fi configuration daemon for MediaTek gateways
Serves one ONC RPC program, through which a management stack configures and
watches the MediaTek PCIe radios of a set-top box or home gateway.")
set(CPACK_COMPONENT_WIFICONF_DESCRIPTION "client of the Wi-Fi configuration daemon
Calls every procedure of wificonfd by name. Also holds the wire contract,
from which rpcgen makes clients in C.")
set(CPACK_COMPONENT_GWBOX_DESCRIPTION "simulated gateway for the Wi-Fi configuration daemon
Runs a command, such as wificonfd, in a gateway with radios, stations and
companions that are a model, for everybody without radios on the desk.")

# The programs that the daemon and its unit start: pgrep and kill, killall and fuser,
# iwpriv, rmmod. A portmapper finds no port without /etc/services, which is in netbase.
set(CPACK_DEBIAN_WIFICONFD_PACKAGE_DEPENDS "rpcbind, netbase, procps, psmisc, wireless-tools, kmod")
set(CPACK_DEBIAN_WIFICONFD_PACKAGE_CONTROL_EXTRA
  "${CMAKE_CURRENT_SOURCE_DIR}/debian/postinst;${CMAKE_CURRENT_SOURCE_DIR}/debian/prerm"
  "${CMAKE_CURRENT_SOURCE_DIR}/debian/postrm")
set(CPACK_DEBIAN_WIFICONF_PACKAGE_SUGGESTS "rpcsvc-proto, libtirpc-dev, pkg-config")
set(CPACK_DEBIAN_GWBOX_PACKAGE_DEPENDS "rpcbind, netbase")
set(CPACK_DEBIAN_GWBOX_PACKAGE_RECOMMENDS "wificonf, wificonfd, iproute2")
include(CPack)
