# Level-2 products and updates against OpenBLAS (bench/level2_bench.cpp).
add_executable(ork-bench-level2 ${CMAKE_CURRENT_SOURCE_DIR}/level2_bench.cpp)
target_link_libraries(ork-bench-level2 PRIVATE ork benchmark::benchmark ${CMAKE_DL_LIBS})
target_include_directories(ork-bench-level2 PRIVATE ${CMAKE_SOURCE_DIR})
if(ORK_BUILD_TESTS)
  # a smoke test, not a timing: the program agrees with OpenBLAS before it times
  add_test(NAME bench-level2-runs
           COMMAND ork-bench-level2 --benchmark_filter=/256/ --benchmark_min_time=0.01)
endif()
