# What is installed: the libraries, their public headers, the CMake package and the pkg-config files. All of it can be moved
# to another place as a whole.
include(CMakePackageConfigHelpers)

install(TARGETS kelvobase
    EXPORT KelvoBaseTargets
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(KELVOBASE_BUILD_XML)
    # A set of its own: who does not ask for XML must not need Xerces-C.
    install(TARGETS kelvobase_xml
        EXPORT KelvoBaseXmlTargets
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endif()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/KelvoBase)
install(EXPORT KelvoBaseTargets
    NAMESPACE KelvoBase::
    DESTINATION ${package_dir})
if(KELVOBASE_BUILD_XML)
    install(EXPORT KelvoBaseXmlTargets
        NAMESPACE KelvoBase::
        DESTINATION ${package_dir})
endif()
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

# A pkg-config file finds the prefix from its own place; absolute install folders stay as they are.
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
set(KELVOBASE_PC_LIBRARIES "")
if(NOT BUILD_SHARED_LIBS)
    set(KELVOBASE_PC_DEFINITIONS " -DKELVOBASE_STATIC")
    # A DLL or shared object brings its own with it; to an archive they have to be given.
    get_target_property(libraries kelvobase LINK_LIBRARIES)
    if(libraries)
        list(TRANSFORM libraries PREPEND " -l")
        list(JOIN libraries "" KELVOBASE_PC_LIBRARIES)
    endif()
endif()
set(pkgconfig_names kelvobase)
if(KELVOBASE_BUILD_XML)
    list(APPEND pkgconfig_names kelvobase-xml)
endif()
foreach(name IN LISTS pkgconfig_names)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/package/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/package/${name}.pc DESTINATION ${pkgconfig_dir})
endforeach()
