# The programs of examples/, which docs/guide.md walks through: example_NAME each.
set(_examples ${PROJECT_SOURCE_DIR}/examples)
project_sources(_sources ${_examples}/*.cpp)
set(UTILS_STATICS_EXAMPLES)
foreach(_source IN LISTS _sources)
  cmake_path(GET _source STEM _name)
  add_executable(example_${_name} ${_source})
  target_link_libraries(example_${_name} PRIVATE project_settings Utils_Statics qor_utils_host
    zel_string_convert_host pro_actions_host gdiplus ole32)
  project_guard(example_${_name})
  list(APPEND UTILS_STATICS_EXAMPLES ${_name})
endforeach()

# Their files lie beside them.
file(GLOB _files CONFIGURE_DEPENDS RELATIVE ${_examples} ${_examples}/*.x?? ${_examples}/protocol/*.xml)
foreach(_file IN LISTS _files)
  configure_file(${_examples}/${_file} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${_file} COPYONLY)
endforeach()
