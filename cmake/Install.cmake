# Where things go: the shared library, its headers, a CMake package, a pkg-config file; the tool, its manual page and
# completion; the documents.
include(CMakePackageConfigHelpers)

install(TARGETS memdata_shared EXPORT memdataTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(TARGET lanefill)
    install(TARGETS lanefill RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(FILES docs/lanefill.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES tools/lanefill/lanefill.bash RENAME lanefill
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions)
endif()
install(DIRECTORY memdata DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h" PATTERN "*.def" PATTERN "internal.h" EXCLUDE PATTERN "elf_image.h" EXCLUDE)
install(FILES LICENSE README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.md")
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(EXPORT memdataTargets NAMESPACE memdata:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/memdata)

configure_package_config_file(cmake/memdataConfig.cmake.in memdataConfig.cmake
        INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/memdata)
write_basic_package_version_file(memdataConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/memdataConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/memdataConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/memdata)

# The file finds its prefix from where it lies, so that an installed tree can be moved.
file(RELATIVE_PATH MEMDATA_PREFIX_FROM_PC "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file(cmake/memdata.pc.in memdata.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/memdata.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
