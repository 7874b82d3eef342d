# CPack reads this for each generator.
if(CPACK_GENERATOR STREQUAL "DEB")
  set(CPACK_PACKAGING_INSTALL_PREFIX /opt/nelvo)
  # The symbols go into packages of their own, which strips the files as well.
  set(CPACK_STRIP_FILES OFF)
endif()
