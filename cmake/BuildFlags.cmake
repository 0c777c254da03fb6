# Flags of every target in this tree. Results are promised to the bit, so how the compiler rounds is
# part of the build.
add_library(velmorn64_build_flags INTERFACE)
target_compile_features(velmorn64_build_flags INTERFACE cxx_std_17)

if(MSVC)
  target_compile_options(velmorn64_build_flags INTERFACE /W4 /fp:precise /utf-8)
else()
  target_compile_options(velmorn64_build_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion
    # No fused multiply-add: it rounds once where two roundings are promised.
    -ffp-contract=off
    # g++ 12.2's straight-line vectoriser folds double -> float -> double of two neighbouring values
    # into nothing and so drops a promised rounding to float.
    # tests/foundation/rounding_test.cpp fails without this flag.
    -fno-tree-slp-vectorize)
endif()

if(VELMORN64_SANITIZE)
  target_compile_options(velmorn64_build_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(velmorn64_build_flags INTERFACE -fsanitize=address,undefined)
endif()
if(VELMORN64_COVERAGE)
  target_compile_options(velmorn64_build_flags INTERFACE --coverage)
  target_link_options(velmorn64_build_flags INTERFACE --coverage)
endif()
