# Runs during installation, when the prefix is final. Writes the units for that prefix
# and installs them.
set(CMAKE_INSTALL_FULL_SBINDIR ${CMAKE_INSTALL_PREFIX}/${sbin})
set(CMAKE_INSTALL_FULL_DOCDIR ${CMAKE_INSTALL_PREFIX}/${doc})
configure_file(${source}/wificonfd.service.in ${units}/wificonfd.service @ONLY)
configure_file(${source}/rpcbind.conf.in ${units}/rpcbind.service.d/wificonfd.conf @ONLY)
file(INSTALL ${units}/ DESTINATION ${CMAKE_INSTALL_PREFIX}/lib/systemd/system)
