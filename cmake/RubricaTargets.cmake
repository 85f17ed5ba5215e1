# How this project declares its targets: one library a folder, one test program a folder, benchmarks and
# fuzz targets. The USES of a folder are also what scripts/check_layers.py allows its #include lines.
include_guard(GLOBAL)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

find_program(RUBRICA_CCACHE ccache)
if(RUBRICA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${RUBRICA_CCACHE}")
endif()

add_library(rubrica_warnings INTERFACE)
target_compile_options(rubrica_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
  # g++ 12 sees overlaps that can't be in std::string's own code at -O3 (GCC bug 105329).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

if(RUBRICA_SANITIZE)
  add_compile_options(-fsanitize=${RUBRICA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${RUBRICA_SANITIZE})
endif()

set(RUBRICA_LAYERS_FILE "${CMAKE_BINARY_DIR}/layers.txt")
file(WRITE "${RUBRICA_LAYERS_FILE}" "")

# rubrica_library(FOLDER SOURCES a.cpp ... [USES folder ...] [LIBRARIES target ...])
# The static library rubrica_FOLDER of one folder. Includes are written from the root: "biff/sheet.h".
function(rubrica_library folder)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES;LIBRARIES" ${ARGN})
  string(REPLACE "/" "_" name ${folder})
  add_library(rubrica_${name} STATIC ${ARG_SOURCES})
  target_include_directories(rubrica_${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(rubrica_${name} PRIVATE rubrica_warnings)
  foreach(use ${ARG_USES})
    string(REPLACE "/" "_" use_name ${use})
    target_link_libraries(rubrica_${name} PUBLIC rubrica_${use_name})
  endforeach()
  target_link_libraries(rubrica_${name} PUBLIC ${ARG_LIBRARIES})
  file(APPEND "${RUBRICA_LAYERS_FILE}" "${folder}: ${ARG_USES}\n")
  # What the public library is put together from, see RubricaPackage.cmake.
  set_property(GLOBAL PROPERTY RUBRICA_USES_${name} "${ARG_USES}")
  set_property(GLOBAL PROPERTY RUBRICA_LIBRARIES_${name} "${ARG_LIBRARIES}")
endfunction()

# rubrica_test(FOLDER SOURCES a_test.cpp ... [USES folder ...] [LIBRARIES target ...])
# The test program FOLDER_tests; every TEST in it is one ctest entry.
function(rubrica_test folder)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES;LIBRARIES" ${ARGN})
  string(REPLACE "/" "_" name ${folder})
  add_executable(${name}_tests ${ARG_SOURCES})
  target_include_directories(${name}_tests PRIVATE ${PROJECT_SOURCE_DIR})
  foreach(use ${ARG_USES})
    string(REPLACE "/" "_" use_name ${use})
    target_link_libraries(${name}_tests PRIVATE rubrica_${use_name})
  endforeach()
  target_link_libraries(${name}_tests PRIVATE rubrica_warnings ${ARG_LIBRARIES} GTest::gmock GTest::gtest_main)
  target_compile_definitions(${name}_tests PRIVATE
    RUBRICA_SOURCE_DIR="${PROJECT_SOURCE_DIR}" RUBRICA_BINARY_DIR="${PROJECT_BINARY_DIR}")
  # Every test reads the same headers of the framework: grouped they are read once for eight files, in a quarter of the
  # time.
  set_target_properties(${name}_tests PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  # Optimising assertions takes longer than running them: half of the time of a sanitizer build.
  target_compile_options(${name}_tests PRIVATE -O0)
  gtest_discover_tests(${name}_tests TEST_PREFIX "${folder}/" DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()

# rubrica_bench(NAME SOURCES a_bench.cpp ... [USES folder ...]): a Google Benchmark program, never a test.
function(rubrica_bench name)
  if(NOT RUBRICA_BENCH)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "SOURCES;USES;LIBRARIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  foreach(use ${ARG_USES})
    string(REPLACE "/" "_" use_name ${use})
    target_link_libraries(${name} PRIVATE rubrica_${use_name})
  endforeach()
  target_link_libraries(${name} PRIVATE rubrica_warnings ${ARG_LIBRARIES} benchmark::benchmark_main)
endfunction()

# All libFuzzer targets and nothing else.
if(RUBRICA_FUZZ)
  add_custom_target(fuzz_targets)
endif()

# rubrica_fuzz(NAME SOURCES a_fuzz.cpp [USES folder ...] [SEEDS directory])
# A libFuzzer target where RUBRICA_FUZZ is on. Elsewhere the same code with a main that replays files, run by
# ctest over its seeds, so that it cannot rot.
function(rubrica_fuzz name)
  cmake_parse_arguments(ARG "" "SEEDS" "SOURCES;USES;LIBRARIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  foreach(use ${ARG_USES})
    string(REPLACE "/" "_" use_name ${use})
    target_link_libraries(${name} PRIVATE rubrica_${use_name})
  endforeach()
  target_link_libraries(${name} PRIVATE rubrica_warnings ${ARG_LIBRARIES})
  if(RUBRICA_FUZZ)
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    add_dependencies(fuzz_targets ${name})
  else()
    target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/fuzz/replay_main.cpp)
    if(ARG_SEEDS AND RUBRICA_TESTS)
      add_test(NAME fuzz/${name} COMMAND ${name} ${CMAKE_CURRENT_SOURCE_DIR}/${ARG_SEEDS})
    endif()
  endif()
endfunction()
