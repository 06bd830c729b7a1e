# How this project's targets are made: warnings, sanitizers, visibility and export headers in one
# place, so that a target's own CMakeLists.txt says only what it consists of.
include(GenerateExportHeader)
include(CheckLinkerFlag)

find_program(KX_CCACHE ccache)
if(KX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${KX_CCACHE}")
  set(CMAKE_C_COMPILER_LAUNCHER "${KX_CCACHE}")
endif()

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN")

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused -Wformat=2)
if(KX_WARNINGS_AS_ERRORS)
  add_compile_options(-Werror)
endif()
if(KX_SANITIZE)
  add_compile_options(-fsanitize=${KX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KX_SANITIZE})
else()
  add_compile_definitions($<$<CONFIG:RelWithDebInfo>:_FORTIFY_SOURCE=2>)
  add_link_options(-Wl,--no-undefined)
endif()
if(KX_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
# Qt's strings are UTF-16 and its implicit conversions hide encodings: every conversion is spelt out.
add_compile_definitions(QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING QT_DEPRECATED_WARNINGS)

# kx_add_library(NAME SOURCES ... [PUBLIC ...] [PRIVATE ...])
#
# A shared library from src/ with its public headers in include/, a generated <NAME/export.hpp>,
# and an alias kxboxlibrary::NAME like the one an installed package offers. PUBLIC and PRIVATE are
# what it is linked with.
function(kx_add_library name)
  cmake_parse_arguments(arg "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} SHARED ${arg_SOURCES})
  add_library(kxboxlibrary::${name} ALIAS ${name})
  generate_export_header(${name}
    EXPORT_FILE_NAME "${CMAKE_CURRENT_BINARY_DIR}/include/${name}/export.hpp")
  target_include_directories(${name}
    PUBLIC
      "$<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>"
      "$<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}/include>"
      "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>"
    PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/src")
  target_compile_features(${name} PUBLIC cxx_std_17)
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
  set_property(GLOBAL APPEND PROPERTY KX_LIBRARIES ${name})
  install(TARGETS ${name} EXPORT kxboxlibraryTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(DIRECTORY include/ "${CMAKE_CURRENT_BINARY_DIR}/include/"
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()

# kx_add_test(TARGET SOURCES ... [LINK ...])
#
# The test program TARGET_test of one library. It holds the library's objects instead of linking the
# library, so that a test can look at what the library keeps hidden. Every public header gets a
# source file of its own that includes nothing else, which shows that it compiles alone.
function(kx_add_test target)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  set(name ${target}_test)
  get_target_property(source_dir ${target} SOURCE_DIR)
  get_target_property(binary_dir ${target} BINARY_DIR)
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE "${source_dir}/include"
    "${source_dir}/include/*.hpp")
  set(alone)
  foreach(header IN LISTS headers)
    string(MAKE_C_IDENTIFIER "${header}" id)
    set(file "${CMAKE_CURRENT_BINARY_DIR}/alone/${id}.cpp")
    file(CONFIGURE OUTPUT "${file}" CONTENT "#include <${header}>\n")
    list(APPEND alone "${file}")
  endforeach()
  add_executable(${name} ${arg_SOURCES} ${alone} $<TARGET_OBJECTS:${target}>)
  string(TOUPPER ${target} upper)
  # Tests take half the time to compile without optimisation, and run hardly longer: what they test
  # is optimised. Fortification needs it.
  target_compile_options(${name} PRIVATE -O0 -U_FORTIFY_SOURCE)
  target_compile_definitions(${name} PRIVATE ${upper}_STATIC_DEFINE
    KX_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data")
  target_include_directories(${name} PRIVATE "${source_dir}/include" "${binary_dir}/include"
    "${source_dir}/src" "${PROJECT_SOURCE_DIR}/tests")
  get_target_property(libraries ${target} LINK_LIBRARIES)
  target_link_libraries(${name} PRIVATE ${libraries} ${arg_LINK} GTest::gmock GTest::gtest_main
    Qt5::Test)
  add_test(NAME ${target} COMMAND ${name})
endfunction()

# kx_add_benchmark(NAME SOURCES ... [LINK ...])
function(kx_add_benchmark name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name}_bench ${arg_SOURCES})
  target_link_libraries(${name}_bench PRIVATE ${arg_LINK} benchmark::benchmark_main)
endfunction()

# kx_add_fuzz_target(NAME SOURCES ... [LINK ...] [MUTATIONS n])
#
# With KX_FUZZ a libFuzzer program; without it the same entry point behind a small driver that runs
# the corpus and a fixed number of mutations of it, as a test of the suite: fewer where an input
# costs much.
function(kx_add_fuzz_target name)
  cmake_parse_arguments(arg "" "MUTATIONS" "SOURCES;LINK" ${ARGN})
  if(NOT arg_MUTATIONS)
    set(arg_MUTATIONS 50000)
  endif()
  set(corpus "${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name}")
  add_executable(${name}_fuzz ${arg_SOURCES})
  target_link_libraries(${name}_fuzz PRIVATE ${arg_LINK})
  if(KX_FUZZ)
    target_link_options(${name}_fuzz PRIVATE -fsanitize=fuzzer)
  else()
    target_sources(${name}_fuzz PRIVATE "${PROJECT_SOURCE_DIR}/fuzz/driver.cpp")
    add_test(NAME fuzz_${name} COMMAND ${name}_fuzz ${arg_MUTATIONS} "${corpus}")
  endif()
endfunction()
