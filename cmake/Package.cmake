# Installation of a library: its public headers, and a package that finds the library's dependencies again for its user.
include(CMakePackageConfigHelpers)

# kovalin_install_library(<library> [PATH_VARS <variable>…]): with the package file cmake/<library>Config.cmake.in, in which
# @PACKAGE_<variable>@ stands for the folder that the variable names below the prefix.
function(kovalin_install_library library)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "PATH_VARS")
    set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/${library}")
    install(TARGETS ${library} EXPORT ${library}Targets
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
    install(EXPORT ${library}Targets NAMESPACE ${library}:: DESTINATION "${package_dir}")

    configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/${library}Config.cmake.in"
        "${CMAKE_BINARY_DIR}/${library}Config.cmake" INSTALL_DESTINATION "${package_dir}" PATH_VARS ${arg_PATH_VARS})
    write_basic_package_version_file("${CMAKE_BINARY_DIR}/${library}ConfigVersion.cmake"
        COMPATIBILITY SameMinorVersion)
    install(FILES
        "${CMAKE_BINARY_DIR}/${library}Config.cmake"
        "${CMAKE_BINARY_DIR}/${library}ConfigVersion.cmake"
        DESTINATION "${package_dir}")
endfunction()
