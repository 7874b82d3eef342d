# Functions that create this project's targets, and the language level, warnings, visibility and sanitizers of all
# targets.
include_guard()
include(CheckLinkerFlag)

cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH NELVO_ROOT)
cmake_path(RELATIVE_PATH NELVO_ROOT BASE_DIRECTORY ${CMAKE_BINARY_DIR} OUTPUT_VARIABLE NELVO_ROOT_FROM_BUILD)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Code that differs between the systems is in separate sources, whose names end with this text.
if(WIN32)
  set(NELVO_SYSTEM windows)
else()
  set(NELVO_SYSTEM posix)
endif()
if(WIN32)
  # On Windows, a library has the same name with every compiler: without the prefix "lib".
  set(CMAKE_SHARED_LIBRARY_PREFIX "")
  set(CMAKE_SHARED_MODULE_PREFIX "")
endif()

find_program(NELVO_CCACHE ccache)
if(NELVO_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${NELVO_CCACHE})
endif()

add_library(nelvo_options INTERFACE)
target_compile_definitions(nelvo_options INTERFACE
  QT_DEPRECATED_WARNINGS
  QT_MESSAGELOGCONTEXT
  QT_NO_CAST_FROM_BYTEARRAY
  QT_NO_CAST_TO_ASCII
  QT_NO_KEYWORDS)
if(WIN32)
  target_compile_definitions(nelvo_options INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN UNICODE _UNICODE
    _WIN32_WINNT=0x0A00)
endif()
if(MSVC)
  target_compile_options(nelvo_options INTERFACE
    /W4 /WX /utf-8 /permissive- /Zc:__cplusplus /bigobj)
else()
  target_compile_options(nelvo_options INTERFACE
    -Wall -Wextra -Wpedantic -Werror
    # Source locations in log lines are relative to the repository, even if ccache makes the paths of sources relative
    # to the build directory (CCACHE_BASEDIR).
    -fmacro-prefix-map=${NELVO_ROOT}/= -fmacro-prefix-map=${NELVO_ROOT_FROM_BUILD}/=)
endif()
if(NELVO_SANITIZE)
  target_compile_options(nelvo_options INTERFACE -fsanitize=${NELVO_SANITIZE} -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  target_link_options(nelvo_options INTERFACE -fsanitize=${NELVO_SANITIZE})
  target_sources(nelvo_options INTERFACE
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${NELVO_ROOT}/tests/support/keeplibraries.cpp>)
  if(NELVO_SANITIZE STREQUAL "thread")
    target_sources(nelvo_options INTERFACE
      $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${NELVO_ROOT}/tests/support/qtorder.cpp>)
  endif()
endif()

# nelvo_subsystem(name SOURCES ... LINK ...): adds a folder of the plug-in as a static library, which the plug-in and
# the unit tests link. They also get the libraries in LINK. Includes are relative to the repository's root.
function(nelvo_subsystem name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${NELVO_ROOT})
  target_compile_definitions(${name} PUBLIC NELVO_PLUGIN_BUILD PRIVATE QT_NO_CAST_FROM_ASCII)
  target_link_libraries(${name} PUBLIC nelvo_options ${ARG_LINK})
endfunction()

# nelvo_devkit_library(name SOURCES ... PUBLIC ... PRIVATE ...): adds a static library of the devkit. Its includes are
# relative to devkit/.
function(nelvo_devkit_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${NELVO_ROOT}/devkit)
  target_compile_definitions(${name} PRIVATE QT_NO_CAST_FROM_ASCII)
  target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE nelvo_options ${ARG_PRIVATE})
endfunction()

# nelvo_devkit_program(name SOURCES ... LINK ...): adds a program of the devkit, which is built in bin/.
function(nelvo_devkit_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_compile_definitions(${name} PRIVATE QT_NO_CAST_FROM_ASCII)
  target_link_libraries(${name} PRIVATE nelvo_options NelvoDevkit::CommandLine ${ARG_LINK})
  nelvo_place(${CMAKE_BINARY_DIR}/bin ${name})
endfunction()

# nelvo_place(directory target ...): builds the targets in the directory. The directory is a generator expression,
# because a generator of several configurations would append their names to a plain path.
function(nelvo_place directory)
  set_target_properties(${ARGN} PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY $<1:${directory}>
    RUNTIME_OUTPUT_DIRECTORY $<1:${directory}>)
endfunction()

# The target that `make tsan` builds: the tests with the label "threads".
add_custom_target(nelvo_thread_tests)

# Wine's drive for the files of this system. Undefined if the programs do not run under Wine.
if(WIN32 AND CMAKE_CROSSCOMPILING)
  set(NELVO_DRIVE "Z:")
endif()

# nelvo_find_libraries(test): lets the programs of a test find Qt and the libraries of the build. Windows finds
# libraries only beside the program and on the path. Wine adds WINEPATH to the path: Windows paths, separated by
# semicolons, which are escaped here.
function(nelvo_find_libraries name)
  if(WIN32 AND NELVO_TEST_LAUNCHER MATCHES "wine")
    set_tests_properties(${name} PROPERTIES ENVIRONMENT_MODIFICATION
      "WINEPATH=string_prepend:${NELVO_DRIVE}$<TARGET_FILE_DIR:Qt5::Core>\\;;WINEPATH=string_prepend:${NELVO_DRIVE}${NELVO_APP_DIR}\\;")
  elseif(WIN32 AND NOT CMAKE_CROSSCOMPILING)
    set_tests_properties(${name} PROPERTIES ENVIRONMENT_MODIFICATION
      "PATH=path_list_prepend:$<TARGET_FILE_DIR:Qt5::Core>;PATH=path_list_prepend:${NELVO_APP_DIR}")
  endif()
endfunction()

# Every test has the same locale, log and rendering, regardless of the user's environment.
set(NELVO_TEST_ENVIRONMENT
  "LC_ALL=C.UTF-8"
  "QT_QUICK_CONTROLS_STYLE="
  "QT_LOGGING_RULES="
  "QT_MESSAGE_PATTERN="
  "http_proxy="
  "LSAN_OPTIONS=suppressions=${NELVO_ROOT}/tests/support/lsan.supp:print_suppressions=0"
  "UBSAN_OPTIONS=print_stacktrace=1"
  "ASAN_OPTIONS=detect_leaks=1"
  "TSAN_OPTIONS=suppressions=${NELVO_ROOT}/tests/support/tsan.supp:history_size=7")

# nelvo_test_entry(name program [argument...]): adds a test to CTest.
function(nelvo_test_entry name program)
  add_test(NAME ${name} COMMAND ${NELVO_TEST_LAUNCHER} $<TARGET_FILE:${program}> ${ARGN})
  set_tests_properties(${name} PROPERTIES
    LABELS "${ARG_LABELS}"
    TIMEOUT 300
    ENVIRONMENT "${NELVO_TEST_ENVIRONMENT}")
  nelvo_find_libraries(${name})
endfunction()

# nelvo_test(name [LABELS ...] [SOURCES ...] LINK ... [ARGUMENTS ...] [DEFINITIONS ...] [INPUTS ...]): adds a test
# program and its test in CTest. Without SOURCES, the source is NAME.cpp. Each program has its own directory, because
# tests use files beside the executable. INPUTS are files of Qt Quick Test; each gets its own test, such as
# `test_pages_main` for `tst_main.qml`.
function(nelvo_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK;LABELS;ARGUMENTS;INPUTS;DEFINITIONS" ${ARGN})
  if(NOT ARG_SOURCES)
    set(ARG_SOURCES ${name}.cpp)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE nelvo_options Qt5::Test ${ARG_LINK})
  target_compile_definitions(${name} PRIVATE ${ARG_DEFINITIONS})
  nelvo_place(${CMAKE_CURRENT_BINARY_DIR}/${name}.dir ${name})
  if("threads" IN_LIST ARG_LABELS)
    add_dependencies(nelvo_thread_tests ${name})
  endif()
  foreach(input IN LISTS ARG_INPUTS)
    cmake_path(GET input STEM page)
    string(REGEX REPLACE "^tst_" "" page ${page})
    nelvo_test_entry(${name}_${page} ${name} -input ${input})
  endforeach()
  if(NOT ARG_INPUTS)
    nelvo_test_entry(${name} ${name} ${ARG_ARGUMENTS})
  endif()
endfunction()
