# Level-3 routines besides gemm against OpenBLAS (dtrsm, dtrmm, dsyrk, dsymm).
add_executable(ork-bench-level3 ${CMAKE_CURRENT_LIST_DIR}/level3_bench.cpp)
target_link_libraries(ork-bench-level3 PRIVATE ork benchmark::benchmark ${CMAKE_DL_LIBS})
target_include_directories(ork-bench-level3 PRIVATE ${CMAKE_SOURCE_DIR})
if(ORK_BUILD_TESTS)
  # a smoke test, not a timing: both libraries agree and the program runs
  add_test(NAME bench-level3-runs
           COMMAND ork-bench-level3 --benchmark_filter=/256/ --benchmark_min_time=0.01)
endif()
