# Compiles headers that all sources of a room include only once: half the build time of a dialog's test went into Qt's.
#
# Only with GCC, and for the product's own sources only with AMBREL_PRECOMPILE_SOURCES: each source must still include what
# it uses, which the release build (for sources) and the presets with Clang (for tests, too) check.

option(AMBREL_PRECOMPILE_SOURCES "Precompile Qt's headers for the product's sources, too" OFF)

# Qt for tests, without the folder names that Qt6::Test defines for a feature we do not use: with them, one room could not
# share another's headers, nor one clone another's objects.
macro(ambrel_find_qt_test)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets Test)
  set_property(TARGET Qt6::Test PROPERTY INTERFACE_COMPILE_DEFINITIONS QT_TESTLIB_LIB)
endmacro()

# Options with which the compiler's cache sees through a precompiled header.
function(ambrel_cache_precompiled target)
  target_compile_options(${target} PRIVATE -fpch-preprocess)
  if(CCACHE_PROGRAM)
    set_target_properties(${target} PROPERTIES
      CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND};-E;env;CCACHE_SLOPPINESS=pch_defines,time_macros;${CCACHE_PROGRAM}")
  endif()
endfunction()

# Compiles the headers with the options of FIRST, which TARGETS must have as well, and shares them among all of them.
function(ambrel_share_headers first)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;TARGETS")
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    return()
  endif()
  list(TRANSFORM arg_HEADERS REPLACE "(.+)" "<\\1>")
  target_precompile_headers(${first} PRIVATE ${arg_HEADERS})
  ambrel_cache_precompiled(${first})
  foreach(target IN LISTS arg_TARGETS)
    target_precompile_headers(${target} REUSE_FROM ${first})
    ambrel_cache_precompiled(${target})
  endforeach()
endfunction()
