# The settings every target shares, and the functions that make one.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

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
# Without SOURCES all .cpp files directly in the folder are taken.
function(rowvane_floor name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  if(NOT ARG_SOURCES)
    file(GLOB ARG_SOURCES CONFIGURE_DEPENDS "*.cpp")
  endif()
  add_library(rowvane_${name} STATIC ${ARG_SOURCES})
  target_link_libraries(rowvane_${name} PUBLIC rowvane_options ${ARG_LINKS})
endfunction()

# The tests of one floor: every .cpp file in the folder, and in linux/ or windows/ below it those of the system; one
# program, one ctest entry for each case.
#   rowvane_tests(NAME [THREADED] [OWN_MAIN] [LINKS target...])
# THREADED: the floor works with threads, so its tests run under ThreadSanitizer as well (label `threaded`).
# OWN_MAIN: one of the files holds main().
function(rowvane_tests name)
  cmake_parse_arguments(ARG "THREADED;OWN_MAIN" "" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "*.cpp" "${ROWVANE_SYSTEM}/*.cpp")
  add_executable(${name}_tests ${sources})
  target_include_directories(${name}_tests PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  target_compile_definitions(${name}_tests PRIVATE
    ROWVANE_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
  # The code of the tests runs once: compiling it fast matters more.
  target_compile_options(${name}_tests PRIVATE $<$<CONFIG:Release>:-O1>)
  target_link_libraries(${name}_tests PRIVATE rowvane_options ${ARG_LINKS} GTest::gtest GTest::gmock)
  if(NOT ARG_OWN_MAIN)
    target_link_libraries(${name}_tests PRIVATE GTest::gtest_main)
  endif()
  set(labels)
  if(ARG_THREADED)
    set(labels LABELS threaded)
    add_dependencies(threaded_tests ${name}_tests)
  endif()
  # Programs for another system are asked for their cases when they are tested, not in the middle of a busy build.
  set(discovery POST_BUILD)
  if(CMAKE_CROSSCOMPILING)
    set(discovery PRE_TEST)
  endif()
  gtest_discover_tests(${name}_tests DISCOVERY_MODE ${discovery} DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 600 ${labels})
endfunction()
