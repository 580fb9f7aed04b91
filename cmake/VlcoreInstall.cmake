# What `cmake --install` puts in place: the header, the library (the DLL
# and its import library on Windows), a CMake package with the imported
# target vlcore::vlcore, and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS vlcore EXPORT vlcoreTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${PROJECT_SOURCE_DIR}/include/vlcore.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(config_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vlcore)
install(EXPORT vlcoreTargets NAMESPACE vlcore:: DESTINATION ${config_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/vlcoreConfig.cmake.in
  ${CMAKE_BINARY_DIR}/package/vlcoreConfig.cmake INSTALL_DESTINATION ${config_dir})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/package/vlcoreConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/package/vlcoreConfig.cmake ${CMAKE_BINARY_DIR}/package/vlcoreConfigVersion.cmake
  DESTINATION ${config_dir})

# pkg-config: -lvlcore natively; on Windows the import library libVLCORE.dll.a.
if(WIN32)
  set(VLCORE_PC_LIB VLCORE.dll)
else()
  set(VLCORE_PC_LIB vlcore)
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/vlcore.pc.in ${CMAKE_BINARY_DIR}/package/vlcore.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/package/vlcore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
