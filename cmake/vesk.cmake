# Build settings and the two functions with which every folder declares itself.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../lib")

find_program(CCACHE ccache)
if(CCACHE)
  # The sloppiness lets ccache and the precompiled header live together.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

add_library(vesk_settings INTERFACE)
target_compile_options(vesk_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror
  # Same input, same bytes on every machine: no fused multiply-add behind our back.
  -ffp-contract=off
  $<$<AND:$<BOOL:${CCACHE}>,$<CXX_COMPILER_ID:GNU>>:-fpch-preprocess>)
target_include_directories(vesk_settings INTERFACE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/host/api)
if(VESK_SANITIZE)
  target_compile_options(vesk_settings INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer -g1)
  target_link_options(vesk_settings INTERFACE -fsanitize=address,undefined)
endif()
if(VESK_FUZZ)
  target_compile_options(vesk_settings INTERFACE -fsanitize=fuzzer-no-link)
endif()
# A target with the property PLAIN_LINKER gets the linker that lists nothing but what is exported.
target_link_options(vesk_settings INTERFACE
  $<IF:$<BOOL:$<TARGET_PROPERTY:PLAIN_LINKER>>,-fuse-ld=bfd,-fuse-ld=gold>)

# One precompiled header of standard headers, shared by every target.
file(WRITE ${CMAKE_BINARY_DIR}/pch.cpp.in "")
configure_file(${CMAKE_BINARY_DIR}/pch.cpp.in ${CMAKE_BINARY_DIR}/pch.cpp COPYONLY)
add_library(vesk_pch STATIC ${CMAKE_BINARY_DIR}/pch.cpp)
target_link_libraries(vesk_pch PRIVATE vesk_settings)
target_precompile_headers(vesk_pch PRIVATE
  <algorithm> <array> <charconv> <cmath> <cstdint> <cstring> <functional> <map> <memory> <optional>
  <span> <string> <string_view> <unordered_map> <utility> <variant> <vector>)

find_package(GTest REQUIRED)
include(GoogleTest)

# vesk_test(NAME SOURCES... [LINK targets...] [ENVIRONMENT ...]): one GoogleTest program, its cases known to ctest.
function(vesk_test name)
  cmake_parse_arguments(T "" "" "SOURCES;LINK;DEFINES" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LINK} vesk_settings GTest::gtest GTest::gtest_main)
  # -fPIC as in the libraries: the precompiled header does not fit -fPIE, which programs get otherwise.
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
  # GCC 12 sees overruns in "literal" + string where there are none, and tests are full of such sums.
  target_compile_options(${name} PRIVATE -fPIC -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow)
  target_precompile_headers(${name} REUSE_FROM vesk_pch)
  target_compile_definitions(${name} PRIVATE VESK_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
                                             VESK_BINARY_DIR="${CMAKE_BINARY_DIR}" ${T_DEFINES})
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 120)
endfunction()

# vesk_floor(NAME SOURCES... [TESTS...] [DEPENDS floors...]): a static library vesk_NAME and its test program.
function(vesk_floor name)
  cmake_parse_arguments(F "" "" "SOURCES;TESTS;DEPENDS;LINK" ${ARGN})
  add_library(vesk_${name} STATIC ${F_SOURCES})
  target_link_libraries(vesk_${name} PUBLIC ${F_DEPENDS} ${F_LINK} vesk_settings)
  target_precompile_headers(vesk_${name} REUSE_FROM vesk_pch)
  if(F_TESTS)
    vesk_test(vesk_${name}_test SOURCES ${F_TESTS} LINK vesk_${name})
  endif()
endfunction()
