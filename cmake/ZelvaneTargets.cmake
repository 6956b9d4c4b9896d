# What every target of the project has in common.

# Warnings are errors; sanitizers as the preset asks; the include root is the repository.
function(zelvane_defaults target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                           -Wno-missing-field-initializers
                                           -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # GCC 12 sees overflows and overlaps in `"text" + std::string` that are not there (its bug 105651).
    target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-restrict
                                             -Wno-stringop-overflow -Wno-stringop-overread)
  endif()
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
  if(ZELVANE_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  if(ZELVANE_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${ZELVANE_SANITIZE}
                                             -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=${ZELVANE_SANITIZE})
    if(ZELVANE_SANITIZE STREQUAL thread)
      # Asio fences what its own locks already order; the sanitizer does not know fences.
      target_compile_options(${target} PRIVATE -Wno-tsan)
    endif()
  endif()
endfunction()

# A folder is a library, with its tests beside the sources:
#   zelvane_library(NAME HEADERS ... SOURCES ... TESTS ... USES ...)
# The tests become one program, NAME_test. Optional PCH names a header to precompile.
function(zelvane_library name)
  cmake_parse_arguments(ARG "" "PCH" "HEADERS;SOURCES;TESTS;USES" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}
                                FILES ${ARG_HEADERS})
  set_target_properties(${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
  target_link_libraries(${name} PUBLIC ${ARG_USES})
  zelvane_defaults(${name})
  if(ARG_PCH)
    target_precompile_headers(${name} PRIVATE ${PROJECT_SOURCE_DIR}/${ARG_PCH})
  endif()
  if(ZELVANE_TESTS AND ARG_TESTS)
    add_executable(${name}_test ${ARG_TESTS})
    target_link_libraries(${name}_test PRIVATE ${name} test_support GTest::gmock_main)
    zelvane_defaults(${name}_test)
    target_precompile_headers(${name}_test PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/precompiled.h)
    gtest_discover_tests(${name}_test TEST_PREFIX "${name}: " PROPERTIES TIMEOUT 60)
  endif()
endfunction()
