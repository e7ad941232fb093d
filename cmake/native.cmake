# The native side: the benchmarks, or the logic tests against scripted seams.
if(TOLVAN_BENCH)
    find_package(benchmark REQUIRED)
    add_executable(tolvan_bench bench/bench_desktop.cpp bench/files_bench.cpp bench/monitor_bench.cpp
                                bench/store_bench.cpp
                                bench/tolvan_bench.cpp)
    target_link_libraries(tolvan_bench PRIVATE tolvan_logic benchmark::benchmark)
    return()
endif()

find_package(GTest REQUIRED)

add_library(tolvan_test_seams OBJECT tests/desktop_script.cpp tests/filegen_script.cpp tests/library_script.cpp
                                      tests/line_script.cpp)
target_link_libraries(tolvan_test_seams PUBLIC tolvan_logic)

add_executable(logic_tests
    tests/app_test.cpp
    tests/checksum_test.cpp
    tests/comm_flash_test.cpp
    tests/comm_log_test.cpp
    tests/comm_modem_test.cpp
    tests/comm_noise_test.cpp
    tests/comm_settings_test.cpp
    tests/comm_test.cpp
    tests/comm_transfer_test.cpp
    tests/comm_xmodem_test.cpp
    tests/convert_test.cpp
    tests/filegen_edits_test.cpp
    tests/filegen_formats_test.cpp
    tests/filegen_import_test.cpp
    tests/library_test.cpp
    tests/lookup_test.cpp
    tests/memory_test.cpp
    tests/monitor_test.cpp
    tests/program_checks_test.cpp
    tests/program_display_test.cpp
    tests/program_fields_test.cpp
    tests/program_file_test.cpp
    tests/program_text_test.cpp
    tests/setup_file_test.cpp
    tests/setup_formats_test.cpp)
target_link_libraries(logic_tests PRIVATE tolvan_test_seams GTest::gtest_main)
target_compile_definitions(logic_tests PRIVATE TOLVAN_SAMPLES="${CMAKE_SOURCE_DIR}/samples"
                                               TOLVAN_TEST_DATA="${CMAKE_SOURCE_DIR}/tests/data")

# Makes the files in samples/ with the program's own code.
add_executable(make_samples tools/make_samples.cpp)
target_link_libraries(make_samples PRIVATE tolvan_test_seams)

# Preloaded by the program tests; it meets Wine's processes, so no sanitizer may be in it.
add_library(fake_modem MODULE tests/program/fake_modem.c)
