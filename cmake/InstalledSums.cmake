# Run at the end of the installation of one component: writes the SHA-256 sums of its files, in the
# form that `sha256sum --check` reads, into COMPONENT.sha256 beside them.
if(NOT CMAKE_INSTALL_COMPONENT)
  return()
endif()
set(_files ${CMAKE_INSTALL_MANIFEST_FILES})
list(SORT _files)
set(_sums "")
foreach(_file IN LISTS _files)
  file(SHA256 $ENV{DESTDIR}${_file} _sum)
  cmake_path(RELATIVE_PATH _file BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX})
  string(APPEND _sums "${_sum}  ${_file}\n")
endforeach()
file(WRITE $ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_COMPONENT}.sha256 "${_sums}")
