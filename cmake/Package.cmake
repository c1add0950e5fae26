# Makes the package that `cmake --install` puts in place and find_package(Utils_Statics CONFIG)
# finds, and the archives that `cpack` makes of it.
include(CMakePackageConfigHelpers)

get_property(_libraries GLOBAL PROPERTY project_libraries)
install(TARGETS ${_libraries} EXPORT Utils_StaticsTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(_library IN LISTS _libraries)
  get_target_property(_folder ${_library} SOURCE_DIR)
  install(DIRECTORY ${_folder}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")
endforeach()

# The headers of the program that hosts the libraries have a folder of their own, so that only who
# links NAME_host sees them.
get_property(_hosts GLOBAL PROPERTY project_hosts)
foreach(_library IN LISTS _hosts)
  get_target_property(_folder ${_library} SOURCE_DIR)
  install(TARGETS ${_library}_host EXPORT Utils_StaticsTargets)
  install(DIRECTORY ${_folder}/host/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/host
    FILES_MATCHING PATTERN "*.h")
endforeach()

# The programs, the codec and what they need to run beside the libraries.
install(TARGETS exam mjpg codecsetup crashreporter RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY exam/sample DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${UTILS_STATICS_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR})
if(UTILS_STATICS_CHECKED)
  # Every module imports it.
  install(TARGETS guardheap_dll RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
foreach(_dll IN LISTS UTILS_STATICS_RUNTIME_DLLS)
  install(FILES ${_dll}.debug DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Debug)
endforeach()
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/Utils_Statics)
# The pages, in the same places to each other as in the checkout, so that their links hold.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md
  DESTINATION ${CMAKE_INSTALL_DATADIR}/Utils_Statics)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DATADIR}/Utils_Statics
  FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.svg" PATTERN reference EXCLUDE)
# Ours, and those of all that is linked in or lies beside it.
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/Utils_Statics)
install(DIRECTORY ${UTILS_STATICS_DEPENDENCIES_USED}/licences/
  DESTINATION ${CMAKE_INSTALL_DATADIR}/Utils_Statics/licences)

set(_package ${CMAKE_INSTALL_LIBDIR}/cmake/Utils_Statics)
install(EXPORT Utils_StaticsTargets NAMESPACE Utils_Statics:: DESTINATION ${_package})
# These files have to lie beside a program that uses the library.
set(_client_files ${_libraries})
list(TRANSFORM _client_files APPEND .dll)
list(APPEND _client_files dumpwriter.exe)
foreach(_dll IN LISTS UTILS_STATICS_RUNTIME_DLLS)
  cmake_path(GET _dll FILENAME _name)
  list(APPEND _client_files ${_name})
endforeach()
if(UTILS_STATICS_CHECKED)
  list(APPEND _client_files guardheap.dll)
endif()
configure_package_config_file(cmake/Utils_StaticsConfig.cmake.in
  ${CMAKE_BINARY_DIR}/Utils_StaticsConfig.cmake INSTALL_DESTINATION ${_package}
  PATH_VARS CMAKE_INSTALL_BINDIR)
# docs/package.md says what a version keeps.
write_basic_package_version_file(${CMAKE_BINARY_DIR}/Utils_StaticsConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_BINARY_DIR}/Utils_StaticsConfig.cmake ${CMAKE_BINARY_DIR}/Utils_StaticsConfigVersion.cmake
  DESTINATION ${_package})

# The sums of what was installed before, so it comes last.
foreach(_component IN ITEMS Utils_Statics Debug)
  install(SCRIPT cmake/InstalledSums.cmake COMPONENT ${_component})
endforeach()

# `cpack` makes two archives in the folder package/ of the build: one of all that an application
# needs, and one of the debug files.
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/package)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Utils_Statics Debug)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-${UTILS_STATICS_ARCH})
set(CPACK_ARCHIVE_UTILS_STATICS_FILE_NAME ${CPACK_PACKAGE_FILE_NAME})
set(CPACK_ARCHIVE_DEBUG_FILE_NAME ${CPACK_PACKAGE_FILE_NAME}-debug)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS   # whatever the user's umask is
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PROJECT_SOURCES ${PROJECT_SOURCE_DIR})
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/PackageTime.cmake)
include(CPack)
