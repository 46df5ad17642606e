# Transposition throughput of libork against OpenBLAS's omatcopy/imatcopy.
add_executable(ork-bench-trans ${CMAKE_CURRENT_LIST_DIR}/trans_bench.cpp)
target_link_libraries(ork-bench-trans PRIVATE ork benchmark::benchmark ${CMAKE_DL_LIBS})
target_include_directories(ork-bench-trans PRIVATE ${CMAKE_SOURCE_DIR})
if(ORK_BUILD_TESTS)
  # Smoke test: both libraries agree on the data before anything is timed.
  add_test(NAME bench-trans-runs
           COMMAND ork-bench-trans --benchmark_filter=domatcopy_t/.*/4096x4096$ --benchmark_min_time=0.01)
endif()
