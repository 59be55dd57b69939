# The assertions of FlatBuffers' accessors, above all "i < size()" of its vectors, stop the program in every build type. For
# all that reads a model through these accessors.
add_library(kovalin_hard_asserts INTERFACE)
target_compile_definitions(kovalin_hard_asserts INTERFACE
    FLATBUFFERS_ASSERT=KOVALIN_HARD_ASSERT
    FLATBUFFERS_ASSERT_INCLUDE="utils/HardAssert.h")
