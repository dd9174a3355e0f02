# Helpers that every folder's CMakeLists.txt uses, so that warnings, include paths and sanitizers are said once.

include(GNUInstallDirs)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

# The layers test reads the link graph from this reply of CMake itself.
file(WRITE "${CMAKE_BINARY_DIR}/.cmake/api/v1/query/codemodel-v2" "")

add_library(veltrix_options INTERFACE)
target_include_directories(veltrix_options INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_options(veltrix_options INTERFACE
  -Wall -Wextra -Wformat=2 -Wold-style-cast -Wnon-virtual-dtor -Wshadow -Wconversion -Werror)
if(VELTRIX_SANITIZE)
  target_compile_options(veltrix_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(veltrix_options INTERFACE -fsanitize=address,undefined)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # clang counts changes of sign among -Wconversion, g++ does not; both builds ask for the same.
  target_compile_options(veltrix_options INTERFACE -Wno-sign-conversion)
endif()

# veltrix_library(NAME [SOURCES ...] [DEPS ...] [PRIVATE_DEPS ...])
# A static library, or an interface library when it has no source.
function(veltrix_library name)
  cmake_parse_arguments(arg "" "" "SOURCES;DEPS;PRIVATE_DEPS" ${ARGN})
  if(arg_SOURCES)
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC veltrix_options ${arg_DEPS} PRIVATE ${arg_PRIVATE_DEPS})
    if(VELTRIX_FUZZ)
      # The fuzzer is led by what it reaches in the libraries; tests and programs link the same ones without its main.
      target_compile_options(${name} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE veltrix_options ${arg_DEPS})
  endif()
endfunction()

# veltrix_test(NAME SOURCES ... [DEPS ...] [LABELS ...] [ENVIRONMENT ...])
# A GoogleTest program, registered as one ctest of that name.
function(veltrix_test name)
  cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;DEPS;LABELS;ENVIRONMENT" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE veltrix_options ${arg_DEPS} GTest::gmock GTest::gtest_main)
  # What a test is made of runs once; making it fast takes longer than it runs, under the sanitizers twice over.
  target_compile_options(${name} PRIVATE -O0)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    LABELS "${arg_LABELS}" TIMEOUT ${arg_TIMEOUT}
    ENVIRONMENT "VELTRIX_RESOURCES=${CMAKE_BINARY_DIR}/lib/veltrix;QT_QPA_PLATFORM=offscreen;${arg_ENVIRONMENT}")
endfunction()

# veltrix_program(NAME SOURCES ... [DEPS ...] [INSTALL dir below the prefix])
# A program for people, in the build tree's bin folder.
function(veltrix_program name)
  cmake_parse_arguments(arg "" "INSTALL" "SOURCES;DEPS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE veltrix_options ${arg_DEPS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
  if(NOT arg_INSTALL)
    set(arg_INSTALL "${CMAKE_INSTALL_BINDIR}")
  endif()
  install(TARGETS ${name} DESTINATION "${arg_INSTALL}")
endfunction()
