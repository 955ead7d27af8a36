# Installation: headers, libraries, the program, and the packages of CMake and pkg-config.
include(CMakePackageConfigHelpers)

# Headers go to include/lumbra/<folder>/. Those that call themselves internal, in the remark at their top, stay out, and
# so do the backends' folders, which lie one level deeper.
file(GLOB headers RELATIVE "${PROJECT_SOURCE_DIR}/src" CONFIGURE_DEPENDS src/*/*.h)
foreach(header IN LISTS headers)
  file(READ "src/${header}" text)
  string(REGEX REPLACE "\n\n.*" "" remark "${text}")
  if(NOT remark MATCHES "(^|[^A-Za-z])[Ii]nternal([^A-Za-z]|$)")
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "src/${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/lumbra/${folder}")
  endif()
endforeach()

install(TARGETS lumbra lumbra-io EXPORT LumbraTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/lumbra")
install(TARGETS lumbra-host RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Lumbra")
install(EXPORT LumbraTargets NAMESPACE Lumbra:: DESTINATION "${package_dir}")
configure_package_config_file(cmake/LumbraConfig.cmake.in "${CMAKE_BINARY_DIR}/LumbraConfig.cmake"
                              INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${CMAKE_BINARY_DIR}/LumbraConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/LumbraConfig.cmake" "${CMAKE_BINARY_DIR}/LumbraConfigVersion.cmake"
        DESTINATION "${package_dir}")

foreach(package lumbra lumbra-io)
  configure_file(cmake/${package}.pc.in "${CMAKE_BINARY_DIR}/${package}.pc" @ONLY)
  install(FILES "${CMAKE_BINARY_DIR}/${package}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endforeach()
