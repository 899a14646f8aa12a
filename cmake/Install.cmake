# What `cmake --install` and `cpack` deliver. Everything finds its neighbours by relative paths, so an installed tree may be
# moved as a whole.
include(CMakePackageConfigHelpers)

set(v3_dir glibc-hwcaps/x86-64-v3) # below the library folder; the dynamic loader looks there first
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/zelcv")
file(RELATIVE_PATH bin_to_lib "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH pkgconfig_to_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" pkgconfig_to_prefix "${pkgconfig_to_prefix}")

set_target_properties(zelcv PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS zelcore zelcv EXPORT zelcvTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
if(TARGET zelcv_v3)
    set_target_properties(zelcv_v3 PROPERTIES INSTALL_RPATH "$ORIGIN/../..")
    install(TARGETS zelcv_v3 LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/${v3_dir}" NAMELINK_SKIP)
endif()
if(TARGET zelcv_program)
    set_target_properties(zelcv_program PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
    install(TARGETS zelcv_program RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
install(FILES core/zelcore.h include/zelcv.h DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(DIRECTORY include/zelcv DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")

install(EXPORT zelcvTargets NAMESPACE zelcv:: DESTINATION "${package_dir}")
configure_package_config_file(cmake/zelcvConfig.cmake.in "${PROJECT_BINARY_DIR}/cmake/zelcvConfig.cmake"
    INSTALL_DESTINATION "${package_dir}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/cmake/zelcvConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/cmake/zelcvConfig.cmake" "${PROJECT_BINARY_DIR}/cmake/zelcvConfigVersion.cmake"
    DESTINATION "${package_dir}")

configure_file(cmake/zelcv.pc.in "${PROJECT_BINARY_DIR}/cmake/zelcv.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/cmake/zelcv.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# cpack: a Debian package, and an archive of the same tree.
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_CONTACT "The zelcv developers <zelcv@localhost>")
set(CPACK_PACKAGE_FILE_NAME "zelcv_${PROJECT_VERSION}_amd64")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
include(CPack)
