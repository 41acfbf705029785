# Functions with which every target of the tree is declared, so that flags live in one place.

add_library(kv_build_flags INTERFACE)
# A program depends on a shared library only if it uses something of it.
target_link_options(kv_build_flags INTERFACE -Wl,--as-needed)
target_compile_options(kv_build_flags INTERFACE -Wall -Wextra -Wshadow -Wconversion -Werror)
# Release programs name no folder of the machine that built them. GCC 12 sees overlaps where a text
# literal and a std::string are joined (GCC bug 105651), so that warning is off there.
target_compile_options(kv_build_flags INTERFACE
    $<$<CONFIG:Release>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=>
    $<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU>>:-Wno-restrict>)
if(KV_SANITIZE)
    target_compile_options(kv_build_flags INTERFACE
        -fsanitize=${KV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kv_build_flags INTERFACE -fsanitize=${KV_SANITIZE})
endif()
if(KV_LIBFUZZER)
    target_compile_options(kv_build_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# kv_library(NAME SOURCES ... LINK ...): a static library whose public headers lie in include/.
function(kv_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR}/include)
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE kv_build_flags ${ARG_PRIVATE_LINK})
endfunction()

# kv_program(NAME SOURCES ... LINK ...)
function(kv_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE kv_build_flags ${ARG_LINK})
endfunction()

# kv_test(NAME SOURCES ... LINK ... [TIMEOUT seconds]): one googletest program, one ctest entry per
# test case.
function(kv_test name)
    if(NOT KV_TESTS)
        return()
    endif()
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LINK" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE kv_build_flags ${ARG_LINK} GTest::gtest_main GTest::gmock)
    gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT ${ARG_TIMEOUT})
endfunction()

# kv_benchmark(NAME SOURCES ... LINK ...): a Google Benchmark program.
function(kv_benchmark name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE kv_build_flags ${ARG_LINK} benchmark::benchmark_main)
endfunction()

# kv_fuzzer(NAME SOURCES ... LINK ... [MUTATIONS n]): a fuzz target with LLVMFuzzerTestOneInput, its
# seeds in fuzz/seeds/NAME. With libFuzzer it is a fuzzer; otherwise a small driver of our own
# replays the seeds and MUTATIONS (300) mutations of each, and ctest runs that.
function(kv_fuzzer name)
    cmake_parse_arguments(ARG "" "MUTATIONS" "SOURCES;LINK" ${ARGN})
    if(KV_LIBFUZZER)
        add_executable(${name} ${ARG_SOURCES})
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    else()
        add_executable(${name} ${ARG_SOURCES} ${CMAKE_SOURCE_DIR}/fuzz/replay_main.cpp)
        if(KV_TESTS)
            add_test(NAME ${name}.replay
                COMMAND ${name} ${CMAKE_SOURCE_DIR}/fuzz/seeds/${name} ${ARG_MUTATIONS})
            set_tests_properties(${name}.replay PROPERTIES TIMEOUT 120)
        endif()
    endif()
    target_link_libraries(${name} PRIVATE kv_build_flags ${ARG_LINK})
endfunction()
