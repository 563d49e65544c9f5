# The one place that knows how a target of this house is compiled.

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

# Paths are relative in the cache, so that another clone or worktree takes what this one compiled.
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
    CCACHE_NOHASHDIR=1 CCACHE_PCH_EXTSUM=1 CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

# The standard library checks indices, optionals and iterators in every build: that costs next to
# nothing, and a mistake stops the program before it writes anything wrong.
add_compile_definitions(_GLIBCXX_ASSERTIONS)

# Linking the test programs takes GNU ld several times as long.
find_program(MOLD mold)
if(MOLD)
  add_link_options(-fuse-ld=mold)
endif()

# Sanitizers go by VELLORO_SANITIZE, for example "address,undefined"; the presets set it.
set(VELLORO_SANITIZE "" CACHE STRING "Sanitizers for every target")
if(VELLORO_SANITIZE)
  add_compile_options(-fsanitize=${VELLORO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VELLORO_SANITIZE})
endif()

# A packager with another compiler passes -DCMAKE_COMPILE_WARNING_AS_ERROR=OFF.
option(CMAKE_COMPILE_WARNING_AS_ERROR "Warnings stop the build" ON)

add_library(velloro_warnings INTERFACE)
target_compile_options(velloro_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual)
# g++ 12 finds these in the standard library's own code once it has inlined or instrumented it.
if(VELLORO_SANITIZE)
  target_compile_options(velloro_warnings INTERFACE -Wno-maybe-uninitialized -Wno-tsan)
elseif(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  target_compile_options(velloro_warnings INTERFACE -Wno-maybe-uninitialized -Wno-error=array-bounds
    -Wno-error=free-nonheap-object -Wno-error=restrict -Wno-error=stringop-overflow
    -Wno-error=stringop-overread)
endif()

# The asserts of tests run once, and optimising them takes half the time of a build.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  set(VELLORO_TEST_OPTIONS -O1)
endif()

# velloro_precompiled(<name> <header>…): a precompiled header for other targets. The compiler cache
# knows it by what it is made of, since its bytes differ from build to build.
function(velloro_precompiled name)
  add_library(${name} OBJECT ${PROJECT_SOURCE_DIR}/cmake/Precompiled.cpp)
  target_link_libraries(${name} PRIVATE velloro_warnings)
  target_precompile_headers(${name} PRIVATE ${ARGN})
  string(TOUPPER "CMAKE_CXX_FLAGS_${CMAKE_BUILD_TYPE}" flags)
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${name}.dir/cmake_pch.hxx.gch.sum
    CONTENT "${CMAKE_CXX_COMPILER_VERSION} ${${flags}} ${VELLORO_SANITIZE} ${VELLORO_TEST_OPTIONS} ${GTest_VERSION} ${ARGN}")
endfunction()

set(VELLORO_STANDARD_HEADERS <algorithm> <array> <atomic> <charconv> <cmath> <compare> <concepts>
  <cstdint> <expected> <filesystem> <functional> <limits> <map> <memory> <mutex> <optional> <set>
  <span> <string> <string_view> <tuple> <type_traits> <utility> <variant> <vector>)
velloro_precompiled(velloro_standard ${VELLORO_STANDARD_HEADERS})

# velloro_library(<name> <source>…): a static library from this folder. Its headers are included
# as "<Folder>/<Header>.h". Edges to other targets are declared beside it with
# target_link_libraries, which scripts/lint compares with the includes.
function(velloro_library name)
  velloro_static(${name} ${CMAKE_CURRENT_SOURCE_DIR}/.. ${ARGN})
endfunction()

# velloro_room(<name> <source>…): the same for one room of a folder that has several, each a target
# of its own. Its headers are included as "<Folder>/<Room>/<Header>.h".
function(velloro_room name)
  velloro_static(${name} ${CMAKE_CURRENT_SOURCE_DIR}/../.. ${ARGN})
endfunction()

function(velloro_static name include_root)
  # One spelling per folder, so that the compiler searches each only once.
  cmake_path(NORMAL_PATH include_root)
  add_library(${name} STATIC ${ARGN})
  target_precompile_headers(${name} REUSE_FROM velloro_standard)
  target_include_directories(${name} PUBLIC ${include_root})
  target_link_libraries(${name} PRIVATE velloro_warnings)
endfunction()

# velloro_headers(<name>): the same for a folder of headers alone.
function(velloro_headers name)
  cmake_path(GET CMAKE_CURRENT_SOURCE_DIR PARENT_PATH include_root)
  add_library(${name} INTERFACE)
  target_include_directories(${name} INTERFACE ${include_root})
endfunction()

# velloro_test(<name> <source>…): one test program, each of its cases known to ctest.
function(velloro_test name)
  add_executable(${name} ${ARGN})
  target_precompile_headers(${name} REUSE_FROM velloro_testing)
  target_compile_options(${name} PRIVATE ${VELLORO_TEST_OPTIONS})
  target_link_libraries(${name} PRIVATE velloro_warnings GTest::gmock GTest::gtest_main)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/Tests)
  target_compile_definitions(${name} PRIVATE VELLORO_FIXTURES="${PROJECT_SOURCE_DIR}/Tests/Fixtures")
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()
