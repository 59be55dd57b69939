# For code whose float results must be the same to the last bit everywhere: each operation is done as written and rounded
# once. Comes after the user's own flags, and so takes back what -Ofast or -ffast-math there would allow.
add_library(kovalin_exact_arithmetic INTERFACE)
target_compile_options(kovalin_exact_arithmetic INTERFACE
    $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-fno-fast-math -fno-unsafe-math-optimizations -ffp-contract=off>
    $<$<CXX_COMPILER_ID:MSVC>:/fp:precise>)
