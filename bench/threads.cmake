# The cost of libork's threading on small calls (bench/threads_bench.cpp).
add_executable(ork-bench-threads ${CMAKE_CURRENT_SOURCE_DIR}/threads_bench.cpp)
target_link_libraries(ork-bench-threads PRIVATE ork benchmark::benchmark ${CMAKE_DL_LIBS})
target_include_directories(ork-bench-threads PRIVATE ${CMAKE_SOURCE_DIR})
