# The native side: the benchmarks, or the logic tests against scripted seams.
if(TOLVAN_BENCH)
    find_package(benchmark REQUIRED)
    add_executable(tolvan_bench bench/bench_desktop.cpp bench/files_bench.cpp bench/monitor_bench.cpp
                                bench/store_bench.cpp
                                bench/tolvan_bench.cpp)
    target_link_libraries(tolvan_bench PRIVATE tolvan_logic benchmark::benchmark)
    return()
endif()

# The readers of files, settings and the line: as libFuzzer programs, or below over what those have left.
add_library(tolvan_fuzz_targets OBJECT fuzz/fuzz_seams.cpp fuzz/targets.cpp)
target_link_libraries(tolvan_fuzz_targets PUBLIC tolvan_logic)
if(TOLVAN_FUZZ)
    foreach(target program setup lookup_file data_file dbase comma_text library upgrade capture compressed_text
                   lookup_string settings xmodem_receive xmodem_auto_receive xmodem_send modem)
        add_executable(fuzz_${target} fuzz/fuzz_main.cpp)
        target_link_libraries(fuzz_${target} PRIVATE tolvan_fuzz_targets)
        target_compile_definitions(fuzz_${target} PRIVATE TOLVAN_FUZZ_TARGET="${target}")
        target_link_options(fuzz_${target} PRIVATE -fsanitize=fuzzer)
    endforeach()
    return()
endif()

find_package(GTest REQUIRED)

add_library(tolvan_test_seams OBJECT tests/desktop_script.cpp tests/file_script.cpp tests/line_script.cpp)
target_link_libraries(tolvan_test_seams PUBLIC tolvan_logic)

add_executable(logic_tests
    tests/app_test.cpp
    tests/checksum_test.cpp
    tests/comm_flash_test.cpp
    tests/comm_modem_test.cpp
    tests/comm_noise_test.cpp
    tests/comm_settings_test.cpp
    tests/comm_test.cpp
    tests/comm_transfer_test.cpp
    tests/comm_xmodem_test.cpp
    tests/convert_test.cpp
    tests/filegen_files_test.cpp
    tests/library_test.cpp
    tests/lookup_test.cpp
    tests/memory_test.cpp
    tests/monitor_test.cpp
    tests/program_test.cpp
    tests/program_text_test.cpp
    tests/setup_formats_test.cpp
    tests/system_files_test.cpp)
target_link_libraries(logic_tests PRIVATE tolvan_test_seams GTest::gtest_main)
target_compile_definitions(logic_tests PRIVATE TOLVAN_SAMPLES="${CMAKE_SOURCE_DIR}/samples"
                                               TOLVAN_TEST_DATA="${CMAKE_SOURCE_DIR}/tests/data")

add_executable(fuzz_replay fuzz/replay.cpp)
target_link_libraries(fuzz_replay PRIVATE tolvan_fuzz_targets GTest::gtest_main)
target_compile_definitions(fuzz_replay PRIVATE TOLVAN_CORPUS="${CMAKE_SOURCE_DIR}/fuzz/corpus/")

# Saves on a disk that fails, and everything with too little memory.
add_executable(fault_tests fuzz/faults_test.cpp)
target_link_libraries(fault_tests PRIVATE tolvan_fuzz_targets GTest::gtest_main)
target_link_options(fault_tests PRIVATE
    -Wl,--wrap=fopen64,--wrap=fread,--wrap=ferror,--wrap=fwrite,--wrap=fseeko64,--wrap=fclose,--wrap=rename)

# Makes the files in samples/ with the program's own code.
add_executable(make_samples tools/make_samples.cpp)
target_link_libraries(make_samples PRIVATE tolvan_test_seams)

# Preloaded by the program tests; it meets Wine's processes, so no sanitizer may be in it.
add_library(fake_modem MODULE tests/program/fake_modem.c)
