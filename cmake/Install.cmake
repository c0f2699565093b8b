# What `cmake --install` puts below the prefix: the libraries, their headers, and how pkg-config and find_package() find them; with
# the host also the shell, its libraries and the switches.
include(CMakePackageConfigHelpers)

set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/pmcli)
install(TARGETS platform pmcli_common EXPORT pmcliTargets)
install(DIRECTORY infra/platform infra/port_manager/pm infra/port_manager/libpmcli/include/pmcli
  TYPE INCLUDE FILES_MATCHING PATTERN *.h)

# Seen from its own file, so that the tree may be moved; from absolute directories, which distributions choose, as they are.
set(pc_directory ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
function(pc_path variable directory full_directory)
  if(IS_ABSOLUTE ${directory} OR IS_ABSOLUTE ${pc_directory})
    set(directory ${full_directory})
  else()
    file(RELATIVE_PATH directory /${pc_directory} /${directory})
    set(directory "\${pcfiledir}/${directory}")
  endif()
  set(${variable} ${directory} PARENT_SCOPE)
endfunction()
pc_path(pc_libdir ${CMAKE_INSTALL_LIBDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
pc_path(pc_includedir ${CMAKE_INSTALL_INCLUDEDIR} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
function(install_pc name)
  configure_file(cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${pc_directory})
endfunction()
install_pc(pmcli)

if(PMCLI_HOST)
  install_pc(pmhost)
  install(TARGETS pmhost EXPORT pmcliTargets)
  install(TARGETS pmsh pmshd)
  foreach(unit pmshd@.service pmshd@.socket pmshd-kernel.service pmshd-kernel.socket)
    configure_file(packaging/systemd/${unit} ${PROJECT_BINARY_DIR}/systemd/${unit} @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/systemd/${unit} DESTINATION lib/systemd/system)
  endforeach()
  install(FILES packaging/prometheus/pmshd-rules.yaml DESTINATION ${CMAKE_INSTALL_DATADIR}/pmcli/prometheus)
  install(TARGETS ${PMCLI_CLIENT_LIBRARIES} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/pmcli)
  install(TARGETS pmcli_sibling LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/pmsh)
  install(DIRECTORY host/shell/include/pmsh host/embed/include/pmhost TYPE INCLUDE)
  install(DIRECTORY switches DESTINATION ${CMAKE_INSTALL_DATADIR}/pmcli FILES_MATCHING PATTERN *.yaml PATTERN *.hex)
endif()

install(EXPORT pmcliTargets NAMESPACE pmcli:: DESTINATION ${package_directory})
configure_package_config_file(cmake/pmcliConfig.cmake.in ${PROJECT_BINARY_DIR}/pmcliConfig.cmake
  INSTALL_DESTINATION ${package_directory} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/pmcliConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/pmcliConfig.cmake ${PROJECT_BINARY_DIR}/pmcliConfigVersion.cmake
  DESTINATION ${package_directory})
