# One interface target carries the language level, the warnings and the Qt strictness of the whole
# program; every library links it privately.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_NOHASHDIR=1 CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
      ${CCACHE_PROGRAM})
endif()

set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_CXX_EXTENSIONS OFF)
if(WIN32)
  # As programs and DLLs by the toolchain's file: nothing of the compiler's lies beside them.
  string(APPEND CMAKE_MODULE_LINKER_FLAGS " -static")
endif()

add_library(kartocheck_flags INTERFACE)
target_compile_features(kartocheck_flags INTERFACE cxx_std_20)
set(warnings
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<BOOL:${KARTOCHECK_WERROR}>:-Werror>)
# Windows programs have resources as well, whose compiler knows none of them.
target_compile_options(kartocheck_flags INTERFACE "$<$<COMPILE_LANGUAGE:CXX>:${warnings}>")
target_compile_definitions(kartocheck_flags INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_USE_QSTRINGBUILDER QT_NO_KEYWORDS
  $<$<NOT:$<CONFIG:Release>>:_GLIBCXX_ASSERTIONS>
  # Windows 10 on, its functions for wide characters, and no macros named min and max.
  $<$<BOOL:${WIN32}>:_WIN32_WINNT=0x0A00;UNICODE;_UNICODE;WIN32_LEAN_AND_MEAN;NOMINMAX>)

# kartocheck_harden(): what makes an error in the programs and libraries of this folder hard to use
# for somebody else: tables that are read-only once the program runs, guarded stack frames, checked
# C functions, and jumps to marked places only. For release builds: the others have sanitizers.
function(kartocheck_harden)
  if(NOT CMAKE_BUILD_TYPE STREQUAL "Release" OR NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
    return()
  endif()
  add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong
                      -fstack-clash-protection -fcf-protection)
  add_link_options(LINKER:-z,relro LINKER:-z,now $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)
endfunction()

# kartocheck_library(NAME SOURCES ... [PUBLIC libs ...] [PRIVATE libs ...]):
# a static library of this project; its PUBLIC list is its place in the architecture.
function(kartocheck_library name)
  cmake_parse_arguments(arg "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} STATIC ${arg_SOURCES})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE kartocheck_flags ${arg_PRIVATE})
endfunction()
