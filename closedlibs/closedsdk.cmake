# nelvo_import_closed(name header link): imports a closed library from NELVO_CLOSED_SDK as NelvoClosed::<name>.
# `header` is one of its headers. Its headers need the libraries in `link`.
function(nelvo_import_closed name header link)
  find_path(include_dir ${header} PATHS ${NELVO_CLOSED_SDK} PATH_SUFFIXES include
    NO_CACHE NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  find_library(library ${name} PATHS ${NELVO_CLOSED_SDK} PATH_SUFFIXES lib lib64 bin
    NO_CACHE NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  if(NOT include_dir OR NOT library)
    message(FATAL_ERROR "NELVO_CLOSED_SDK, ${NELVO_CLOSED_SDK}, lacks <${header}> or the library ${name}")
  endif()
  add_library(NelvoClosed::${name} UNKNOWN IMPORTED GLOBAL)
  set_target_properties(NelvoClosed::${name} PROPERTIES
    IMPORTED_LOCATION ${library}
    INTERFACE_INCLUDE_DIRECTORIES ${include_dir}
    INTERFACE_LINK_LIBRARIES "${link}")
endfunction()
