# Headers that a whole room's sources include are compiled once: of a dialog's test, half the time went into Qt's.
#
# Only with GCC, and the product's own sources only where AMBREL_PRECOMPILE_SOURCES says so: each source goes on to include
# what it uses, as the release build (sources) and the presets with Clang (tests, too) notice.

option(AMBREL_PRECOMPILE_SOURCES "Precompile Qt's headers for the product's sources, too" OFF)

# Qt for tests, without the names of folders that Qt6::Test defines for something that we do not use: they would keep one
# room from using another's headers, and one clone from using another's objects.
macro(ambrel_find_qt_test)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets Test)
  set_property(TARGET Qt6::Test PROPERTY INTERFACE_COMPILE_DEFINITIONS QT_TESTLIB_LIB)
endmacro()

# What lets the compiler's cache see through a precompiled header.
function(ambrel_cache_precompiled target)
  target_compile_options(${target} PRIVATE -fpch-preprocess)
  if(CCACHE_PROGRAM)
    set_target_properties(${target} PROPERTIES
      CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND};-E;env;CCACHE_SLOPPINESS=pch_defines,time_macros;${CCACHE_PROGRAM}")
  endif()
endfunction()

# The headers after FIRST are compiled with its options, which TARGETS have as well, and shared by all of them.
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
