# Installation: the library, its public headers, and a package that finds the library's dependencies again for its user.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/QXSDKKovalinKit")
install(TARGETS QXSDKKovalinKit EXPORT QXSDKKovalinKitTargets
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(EXPORT QXSDKKovalinKitTargets NAMESPACE QXSDKKovalinKit:: DESTINATION "${package_dir}")

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/QXSDKKovalinKitConfig.cmake.in"
    "${CMAKE_BINARY_DIR}/QXSDKKovalinKitConfig.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${CMAKE_BINARY_DIR}/QXSDKKovalinKitConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES
    "${CMAKE_BINARY_DIR}/QXSDKKovalinKitConfig.cmake"
    "${CMAKE_BINARY_DIR}/QXSDKKovalinKitConfigVersion.cmake"
    DESTINATION "${package_dir}")
