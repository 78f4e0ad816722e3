# The settings every target shares, and the functions that make one.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)

# Several files of a target are compiled as one, which takes a fifth of the time: most of it goes into headers. Names in
# unnamed namespaces are therefore unique within a floor. clang-tidy looks at each file alone (tools/tidy).
set(CMAKE_UNITY_BUILD ON CACHE BOOL "Compile several files as one")
set(CMAKE_UNITY_BUILD_BATCH_SIZE 10)

# What was compiled in one checkout is not compiled again in another: no path of a checkout gets into an object.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" CCACHE_NOHASHDIR=1
    "${CCACHE_PROGRAM}")
endif()
add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=")

find_package(Threads REQUIRED)

# The name of the folders that hold the system's own side.
set(ROWVANE_SYSTEM linux)
if(WIN32)
  set(ROWVANE_SYSTEM windows)
endif()

add_library(rowvane_options INTERFACE)
target_compile_options(rowvane_options INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor -Werror)
# GCC 12 sees overlaps in inlined std::string code that are not there.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(rowvane_options INTERFACE -Wno-restrict)
endif()
target_include_directories(rowvane_options INTERFACE "${CMAKE_SOURCE_DIR}/src")
target_link_libraries(rowvane_options INTERFACE Threads::Threads)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_UNITY_BUILD)
  # It takes a file that is compiled with others for a header.
  target_compile_options(rowvane_options INTERFACE -Wno-subobject-linkage)
endif()
if(WIN32)
  # Windows 10 and later; of its headers only what a program without a window needs; printf as the C standard has it.
  target_compile_definitions(rowvane_options INTERFACE
    _WIN32_WINNT=0x0A00 UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX __USE_MINGW_ANSI_STDIO=1)
endif()
if(ROWVANE_SANITIZE)
  target_compile_options(rowvane_options INTERFACE
    -fsanitize=${ROWVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(rowvane_options INTERFACE -fsanitize=${ROWVANE_SANITIZE})
endif()

# One floor of the program: a static library made of every .cpp file in the folder.
#   rowvane_floor(NAME [SOURCES file...] [LINKS target...])
# Without SOURCES all .cpp files below the folder are taken.
function(rowvane_floor name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  if(NOT ARG_SOURCES)
    file(GLOB_RECURSE ARG_SOURCES CONFIGURE_DEPENDS "*.cpp")
  endif()
  add_library(rowvane_${name} STATIC ${ARG_SOURCES})
  target_link_libraries(rowvane_${name} PUBLIC rowvane_options ${ARG_LINKS})
endfunction()

# The tests of one floor: every .cpp file in the folder, and in linux/ or windows/ below it those of the system; one
# program, which ctest runs once for each suite (RowvaneSuites.cmake).
#   rowvane_tests(NAME [THREADED] [OWN_MAIN] [LINKS target...])
# THREADED: the floor works with threads, so its tests run under ThreadSanitizer as well (label `threaded`).
# OWN_MAIN: one of the files holds main().
function(rowvane_tests name)
  cmake_parse_arguments(ARG "THREADED;OWN_MAIN" "" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "*.cpp" "${ROWVANE_SYSTEM}/*.cpp")
  add_executable(${name}_tests ${sources})
  target_include_directories(${name}_tests PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  # The code of the tests runs once: compiling it fast matters more.
  target_compile_options(${name}_tests PRIVATE $<$<CONFIG:Release>:-O1>)
  target_link_libraries(${name}_tests PRIVATE rowvane_options source_folder ${ARG_LINKS} GTest::gtest GTest::gmock)
  if(NOT ARG_OWN_MAIN)
    target_link_libraries(${name}_tests PRIVATE GTest::gtest_main)
  endif()
  set(labels)
  if(ARG_THREADED)
    set(labels threaded)
    add_dependencies(threaded_tests ${name}_tests)
  endif()
  add_dependencies(tested ${name}_tests)
  file(GENERATE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/${name}_suites_of.cmake" CONTENT
"set(program \"$<TARGET_FILE:${name}_tests>\")
set(emulator \"${CMAKE_CROSSCOMPILING_EMULATOR}\")
set(folder \"${CMAKE_CURRENT_BINARY_DIR}\")
set(name ${name}_tests)
set(labels \"${labels}\")
include(\"${CMAKE_SOURCE_DIR}/cmake/RowvaneSuites.cmake\")
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${CMAKE_CURRENT_BINARY_DIR}/${name}_suites_of.cmake")
endfunction()
