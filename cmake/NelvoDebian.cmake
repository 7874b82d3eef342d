# CPack reads this file for each generator.
if(CPACK_GENERATOR STREQUAL "DEB")
  set(CPACK_PACKAGING_INSTALL_PREFIX /opt/nelvo)
  # CPack moves the debug symbols to separate packages and strips the files itself.
  set(CPACK_STRIP_FILES OFF)
endif()
