# What all targets share: language level, warnings, sanitizers, output folders.

option(AMBREL_TESTS "Build the tests" ON)
option(AMBREL_BENCH "Build the benchmarks" OFF)
option(AMBREL_FUZZ "Build the fuzz targets (Clang only)" OFF)
option(AMBREL_WERROR "Treat warnings as errors" ON)
set(AMBREL_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Only symbols marked AMBREL_EXPORT leave the shared library; the archives that it contains are built the same way.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

# src/package generates AmbrelExport.h here; public headers of every floor include it.
include_directories("${PROJECT_BINARY_DIR}/include")

# Linked privately by each of our own targets, never by a host's.
add_library(ambrel_options INTERFACE)
target_compile_options(ambrel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast
  $<$<BOOL:${AMBREL_WERROR}>:-Werror>)
if(AMBREL_SANITIZE)
  add_compile_options(-fsanitize=${AMBREL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${AMBREL_SANITIZE})
endif()
