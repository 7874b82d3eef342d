# The kit for host developers: `cmake --install` installs it, `cpack` packs it. docs/kit.md shows its folders.
#
#   component   content
#   sdk         headers and the CMake package NelvoSDK
#   runtime     the plug-in's library, and the stand-ins for the editor's closed libraries if they were built
#   devkit      the programs, the reference host in a folder like an installed editor's, the examples
#   doc         the documents, and the licences of the linked libraries
include_guard()
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/NelvoSDK)
set(data_dir ${CMAKE_INSTALL_DATADIR}/nelvo)
# nelvo-launch expects the reference host in this folder, which is beside the folder of nelvo-launch.
set(app_dir app)

set(stand_ins)
if(NOT NELVO_CLOSED_SDK)
  set(stand_ins BVUtility VLSmartDB)
endif()

# sdk
install(DIRECTORY sdk/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT sdk FILES_MATCHING PATTERN *.h)
set_target_properties(NelvoSDK PROPERTIES EXPORT_NAME SDK)
install(TARGETS NelvoSDK EXPORT NelvoSDKTargets INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT NelvoSDKTargets NAMESPACE NelvoSDK:: DESTINATION ${package_dir} COMPONENT sdk)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/NelvoSDKConfig.cmake.in NelvoSDKConfig.cmake
  INSTALL_DESTINATION ${package_dir}
  PATH_VARS data_dir
  NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(NelvoSDKConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/NelvoSDKConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/NelvoSDKConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT sdk)

# runtime
# The plug-in finds the closed libraries in its own folder, wherever the kit is installed.
set_target_properties(NelvoPlugin PROPERTIES EXPORT_NAME Plugin INSTALL_RPATH $ORIGIN)
install(TARGETS NelvoPlugin EXPORT NelvoPluginTargets COMPONENT runtime)
install(EXPORT NelvoPluginTargets NAMESPACE NelvoSDK:: DESTINATION ${package_dir} COMPONENT runtime)
# The stand-ins are installed without headers: a host that compiles against the closed libraries has the real ones.
install(TARGETS ${stand_ins} RUNTIME COMPONENT runtime LIBRARY COMPONENT runtime
  ARCHIVE COMPONENT runtime EXCLUDE_FROM_ALL)

# devkit
if(NELVO_DEVKIT)
  install(TARGETS nelvo-services nelvo-launch nelvo-package nelvo-probe RUNTIME COMPONENT devkit)
  install(FILES devkit/services/seed.json DESTINATION ${data_dir} COMPONENT devkit)

  # A complete application folder, so it contains the plug-in and the stand-ins a second time.
  set_target_properties(NelvoEditor PROPERTIES INSTALL_RPATH $ORIGIN)
  install(TARGETS NelvoEditor NelvoPlugin ${stand_ins}
    RUNTIME DESTINATION ${app_dir} COMPONENT devkit
    LIBRARY DESTINATION ${app_dir} COMPONENT devkit
    ARCHIVE DESTINATION ${app_dir} COMPONENT devkit EXCLUDE_FROM_ALL)
  install(DIRECTORY devkit/host/app/ DESTINATION ${app_dir} COMPONENT devkit)
  if(stand_ins)
    install(FILES closedlibs/VLSmartDB/models.json DESTINATION ${app_dir} COMPONENT devkit)
  endif()

  install(DIRECTORY devkit/host/modules/ DESTINATION ${data_dir}/hostmodules COMPONENT devkit
    FILES_MATCHING PATTERN *.qml PATTERN qmldir PATTERN *.png PATTERN *.qrc PATTERN svg EXCLUDE)
  install(DIRECTORY examples DESTINATION ${data_dir} COMPONENT devkit)
endif()

# doc
install(FILES CHANGELOG.md SECURITY.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc)
# Pages for work on the repository are not installed.
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc
  REGEX "/(api-mainpage|development|performance|style)\\.md$" EXCLUDE
  PATTERN Doxyfile EXCLUDE PATTERN gallery.txt EXCLUDE)
install(FILES cmake/kit/README.md DESTINATION . COMPONENT doc)
# The API reference, if Doxygen is installed.
find_program(NELVO_DOXYGEN doxygen)
if(NELVO_DOXYGEN AND NOT WIN32)
  set(api_dir ${CMAKE_BINARY_DIR}/docs)
  file(GLOB api_sources CONFIGURE_DEPENDS sdk/*/*.h docs/Doxyfile docs/api-mainpage.md)
  add_custom_command(OUTPUT ${api_dir}/html/index.html
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/tools/docs ${api_dir}
    DEPENDS ${api_sources})
  add_custom_target(nelvo_api ALL DEPENDS ${api_dir}/html/index.html)
  install(DIRECTORY ${api_dir}/html/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/api COMPONENT doc)
  if(NELVO_DEVKIT)
    add_dependencies(nelvo_kit nelvo_api)
  endif()
endif()
install(CODE "set(prefix \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\")
set(DOCUMENTS \"\${prefix}/${CMAKE_INSTALL_DOCDIR}\")
set(INCLUDES \"\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}\")
set(DATA \"\${prefix}/${data_dir}\")" COMPONENT doc)
install(SCRIPT cmake/KitLinks.cmake COMPONENT doc)
# The licence texts of Debian's packages, if they exist. docs/third-party.md lists the licences in any case.
foreach(package IN ITEMS libqt5core5a libqt5qml5 libqt5quick5 libqt5webchannel5 libqt5websockets5
    libqt5xmlpatterns5 libquazip1-qt5-1 zlib1g libbz2-1.0 libboost-dev libssl3 libstdc++6)
  install(FILES /usr/share/doc/${package}/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR}/licenses
    RENAME ${package}.txt COMPONENT doc OPTIONAL)
endforeach()
foreach(license IN ITEMS Apache-2.0 GPL-2 GPL-3 LGPL-2.1 LGPL-3)
  install(FILES /usr/share/common-licenses/${license} DESTINATION ${CMAKE_INSTALL_DOCDIR}/licenses
    RENAME ${license}.txt COMPONENT doc OPTIONAL)
endforeach()

# The archive
set(CPACK_GENERATOR TGZ)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
endif()
set(CPACK_PACKAGE_NAME NelvoSDK)
set(CPACK_PACKAGE_VENDOR Nelvo)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "What a host of the Nelvo plug-in is built with")
set(CPACK_PACKAGE_FILE_NAME NelvoSDK-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_VERBATIM_VARIABLES ON)

# Debian packages, created by `cpack -G DEB`: one for each component, and one with the debug symbols of each component
# that contains code. All install into one folder, in which the parts of the kit find one another.
set(CPACK_PACKAGE_CONTACT Nelvo)
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_LIST_DIR}/NelvoDebian.cmake)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${NELVO_APP_DIR})
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME nelvo-plugin)
set(CPACK_DEBIAN_SDK_PACKAGE_NAME nelvo-sdk)
set(CPACK_DEBIAN_DEVKIT_PACKAGE_NAME nelvo-devkit)
set(CPACK_DEBIAN_DOC_PACKAGE_NAME nelvo-doc)
# The library's pages import these QML modules by name, so CPack does not find them from the library's file.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "qml-module-qtqml, qml-module-qtqml-models2, qml-module-qtquick2, \
qml-module-qtquick-window2, qml-module-qtquick-controls, qml-module-qtquick-controls2, qml-module-qtquick-layouts, \
qml-module-qtquick-templates2, qml-module-qtgraphicaleffects")
include(CPack)
cpack_add_component(runtime DESCRIPTION "Nelvo plug-in for the web services of a scene editor")
cpack_add_component(sdk DESCRIPTION "Headers and CMake package of the Nelvo plug-in" DEPENDS runtime)
cpack_add_component(devkit DESCRIPTION "Simulated services, reference host, probe and examples of the Nelvo plug-in"
  DEPENDS runtime)
cpack_add_component(doc DESCRIPTION "Documents of the Nelvo plug-in, and licences of what it links")
