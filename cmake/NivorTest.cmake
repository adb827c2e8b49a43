# nivor_test(LAYER SOURCES … LINKS … [OWN_MAIN] [GROUPS …]): one GoogleTest executable per layer.
#
# OWN_MAIN: one of the sources has the main function.
# GROUPS: filters of GoogleTest, each of which is one test of CTest; what none of them selects is
# one more. Without it every test is one.
# Every test carries its layer's name as a label.
find_package(GTest REQUIRED)
include(GoogleTest)

function(nivor_test layer)
    cmake_parse_arguments(test "OWN_MAIN" "" "SOURCES;LINKS;GROUPS" ${ARGN})
    set(main GTest::gmock_main)
    if(test_OWN_MAIN)
        set(main GTest::gmock)
    endif()
    add_executable(test_${layer} ${test_SOURCES})
    target_link_libraries(test_${layer} PRIVATE nivor_options ${test_LINKS} ${main})
    target_include_directories(test_${layer} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
    # GoogleTest's templates are most of a test's compile time; the code under test keeps its
    # optimisation and every sanitizer.
    target_precompile_headers(test_${layer} PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
    target_compile_options(test_${layer} PRIVATE -O0)
    if(NIVOR_SANITIZE MATCHES undefined)
        target_compile_options(test_${layer} PRIVATE -fno-sanitize=undefined)
    endif()
    if(NIVOR_SANITIZE MATCHES thread)
        set(environment
            "TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/tsan.suppressions")
    else()
        # The leak check takes the thread-local memory of a plugin, such as Qt's for JPEG, for a
        # size it does not have, and crashes on it; it finds those pointers as well without
        # following them there.
        set(environment "ASAN_OPTIONS=intercept_tls_get_addr=0")
    endif()
    if(test_GROUPS)
        nivor_test_groups("${layer}" "${environment}" ${test_GROUPS})
        return()
    endif()
    gtest_discover_tests(test_${layer}
        TEST_PREFIX "${layer}." DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
        PROPERTIES LABELS ${layer} TIMEOUT 300
                   ENVIRONMENT "${environment}")
endfunction()

function(nivor_test_groups layer environment)
    list(JOIN ARGN ":" all)
    foreach(filter ${ARGN} "*-${all}")
        string(REGEX REPLACE "[^A-Za-z0-9]+" "." name "${filter}")
        if(filter MATCHES "^\\*-")
            set(name rest)
        endif()
        string(REGEX REPLACE "^\\.|\\.$" "" name "${name}")
        add_test(NAME "${layer}.${name}" COMMAND test_${layer} "--gtest_filter=${filter}")
        # A filter that selects nothing would pass.
        set_tests_properties("${layer}.${name}" PROPERTIES
            LABELS ${layer} TIMEOUT 300 ENVIRONMENT "${environment}"
            FAIL_REGULAR_EXPRESSION "Running 0 tests")
    endforeach()
endfunction()
