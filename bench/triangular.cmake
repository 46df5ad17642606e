# Triangular level-2 throughput against OpenBLAS (dtrsv, dtrmv).
add_executable(ork-bench-triangular ${CMAKE_CURRENT_LIST_DIR}/triangular_bench.cpp)
target_link_libraries(ork-bench-triangular PRIVATE ork benchmark::benchmark ${CMAKE_DL_LIBS})
target_include_directories(ork-bench-triangular PRIVATE ${CMAKE_SOURCE_DIR})
if(ORK_BUILD_TESTS)
  # a smoke test, not a timing: both libraries agree before anything is timed
  add_test(NAME bench-triangular-runs
           COMMAND ork-bench-triangular --benchmark_filter=/256/ --benchmark_min_time=0.01)
endif()
