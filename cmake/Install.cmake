# What is installed: the library, its public headers, the CMake package and the pkg-config file. All of it can be moved
# to another place as a whole.
include(CMakePackageConfigHelpers)

install(TARGETS kelvobase
    EXPORT KelvoBaseTargets
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/KelvoBase)
install(EXPORT KelvoBaseTargets
    NAMESPACE KelvoBase::
    DESTINATION ${package_dir})
configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/KelvoBaseConfig.cmake.in
    ${PROJECT_BINARY_DIR}/package/KelvoBaseConfig.cmake
    INSTALL_DESTINATION ${package_dir}
    NO_SET_AND_CHECK_MACRO)
# While the major version is 0, a new minor version may change what tools are compiled against.
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/package/KelvoBaseConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/package/KelvoBaseConfig.cmake
    ${PROJECT_BINARY_DIR}/package/KelvoBaseConfigVersion.cmake
    DESTINATION ${package_dir})

# The pkg-config file finds the prefix from its own place; absolute install folders stay as they are.
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(IS_ABSOLUTE "${pkgconfig_dir}")
    set(KELVOBASE_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
    file(RELATIVE_PATH up "/prefix/${pkgconfig_dir}" "/prefix")
    string(REGEX REPLACE "/$" "" up "${up}")
    set(KELVOBASE_PC_PREFIX "\${pcfiledir}/${up}")
endif()
cmake_path(APPEND libdir "\${prefix}" "${CMAKE_INSTALL_LIBDIR}")
cmake_path(APPEND includedir "\${prefix}" "${CMAKE_INSTALL_INCLUDEDIR}")
set(KELVOBASE_PC_LIBDIR "${libdir}")
set(KELVOBASE_PC_INCLUDEDIR "${includedir}")
set(KELVOBASE_PC_DEFINITIONS "")
if(NOT BUILD_SHARED_LIBS)
    set(KELVOBASE_PC_DEFINITIONS " -DKELVOBASE_STATIC")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/kelvobase.pc.in ${PROJECT_BINARY_DIR}/package/kelvobase.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/package/kelvobase.pc DESTINATION ${pkgconfig_dir})
