# nivor_test(LAYER SOURCES … LINKS … [OWN_MAIN]): one GoogleTest executable per layer.
#
# OWN_MAIN: one of the sources has the main function.
# Every test carries its layer's name as a label.
find_package(GTest REQUIRED)
include(GoogleTest)

function(nivor_test layer)
    cmake_parse_arguments(test "OWN_MAIN" "" "SOURCES;LINKS" ${ARGN})
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
    gtest_discover_tests(test_${layer}
        TEST_PREFIX "${layer}." DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
        PROPERTIES LABELS ${layer} TIMEOUT 300
                   ENVIRONMENT "${environment}")
endfunction()
