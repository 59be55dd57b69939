# KOVALIN_SANITIZE applies to every target, since a sanitizer that sees half of a program reports nonsense.
if(KOVALIN_SANITIZE)
    add_compile_options(-fsanitize=${KOVALIN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    # With the sanitizers' checks in between, GCC 12 takes a std::optional that it can't follow for uninitialised.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    add_link_options(-fsanitize=${KOVALIN_SANITIZE})
endif()
