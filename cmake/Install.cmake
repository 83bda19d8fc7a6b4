# The contents of an installation and of the two Debian packages. The component "program" has the commands, "library" is
# for programs that export bundles themselves.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(MSPDI_PACKAGE mspdi-export)
set(MSPDI_DOCUMENTS ${CMAKE_INSTALL_DATAROOTDIR}/doc/${MSPDI_PACKAGE})

# --- The program ---
install(TARGETS MSPDIExport mspdi-export mspdi-conform mspdi-page COMPONENT program)
install(PROGRAMS scripts/export-all DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME mspdi-export-all COMPONENT program)
# Man pages are compressed, as Debian requires, during configuration, so that no target is needed for them.
find_program(MSPDI_GZIP gzip REQUIRED)
function(mspdi_compress file compressed)
  execute_process(COMMAND ${MSPDI_GZIP} -9n INPUT_FILE ${file} OUTPUT_FILE ${compressed} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
foreach(page MSPDIExport.1 mspdi-export.1 mspdi-export-all.1 mspdi-conform.1 mspdi-page.1)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS man/${page})
  mspdi_compress(${PROJECT_SOURCE_DIR}/man/${page} ${PROJECT_BINARY_DIR}/${page}.gz)
  install(FILES ${PROJECT_BINARY_DIR}/${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
endforeach()
foreach(command MSPDIExport mspdi-export mspdi-export-all mspdi-conform mspdi-page)
  install(FILES completions/${command}.bash DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions
    RENAME ${command} COMPONENT program)
endforeach()
# Debian's zsh has a separate folder for completions of packages, which are installed in /usr.
install(CODE [[
  set(MSPDI_ZSH site-functions)
  if(CMAKE_INSTALL_PREFIX STREQUAL "/usr" AND EXISTS /etc/debian_version)
    set(MSPDI_ZSH vendor-completions)
  endif()
]] COMPONENT program)
install(FILES completions/_MSPDIExport DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/zsh/\${MSPDI_ZSH} COMPONENT program)

# Folders keep their places beside the README, so that its links work. Of the examples, only the bundles are installed,
# not files that were exported beside them.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION ${MSPDI_DOCUMENTS} COMPONENT program)
install(DIRECTORY docs DESTINATION ${MSPDI_DOCUMENTS} COMPONENT program)
file(GLOB MSPDI_EXAMPLES CONFIGURE_DEPENDS Examples/*.kvdx)
install(DIRECTORY ${MSPDI_EXAMPLES} DESTINATION ${MSPDI_DOCUMENTS}/Examples COMPONENT program)

# --- The library ---
add_library(mspdi::mspdi ALIAS mspdi)
set(MSPDI_INCLUDES ${CMAKE_INSTALL_INCLUDEDIR}/mspdi)
set_target_properties(mspdi PROPERTIES INTERFACE_INCLUDE_DIRECTORIES
  "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>;$<INSTALL_INTERFACE:${MSPDI_INCLUDES}>")
set_target_properties(mspdi_conform PROPERTIES EXPORT_NAME conform)
# The target mspdi_warnings is not installed, so the installed libraries must not refer to it.
foreach(library mspdi mspdi_conform)
  get_target_property(MSPDI_LINKED ${library} INTERFACE_LINK_LIBRARIES)
  list(REMOVE_ITEM MSPDI_LINKED "$<LINK_ONLY:mspdi_warnings>")
  set_target_properties(${library} PROPERTIES INTERFACE_LINK_LIBRARIES "${MSPDI_LINKED}")
endforeach()
install(TARGETS mspdi mspdi_conform EXPORT mspdiTargets ARCHIVE COMPONENT library)

# The headers that a program needs to export a bundle; those of mappers and corrections are private.
foreach(header
    BundleExport/BundleExport.h
    KVMSPCommon/MSPExportMapper/MSPEBaseline.h
    KVMSPCommon/MSPExportMapper/MSPEExporterInfo.h
    KVMSPCommon/MSPExportMapper/MSPEIdMapper.h
    KVMSPCommon/MSPExportMapper/MSPEMapper.h
    KVMSPCommon/MSPExportMapper/MSPEXMLExporter.h
    MSPDIExport/MSPDIExport.h
    Platform/System/URL.h
    Platform/XML/XMLOutput.h
    Platform/XML/XMLTree.h)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${MSPDI_INCLUDES}/${folder} COMPONENT library)
endforeach()

set(MSPDI_CMAKE ${CMAKE_INSTALL_LIBDIR}/cmake/mspdi)
file(CONFIGURE OUTPUT mspdiConfig.cmake @ONLY CONTENT [[
include(CMakeFindDependencyMacro)
find_dependency(pugixml)
find_dependency(LibArchive)
find_dependency(LibXml2)
find_dependency(ICU COMPONENTS i18n uc)
find_dependency(fmt)
find_dependency(tomlplusplus)
include(${CMAKE_CURRENT_LIST_DIR}/mspdiTargets.cmake)
]])
write_basic_package_version_file(mspdiConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/mspdiConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/mspdiConfigVersion.cmake
  DESTINATION ${MSPDI_CMAKE} COMPONENT library)
install(EXPORT mspdiTargets NAMESPACE mspdi:: DESTINATION ${MSPDI_CMAKE} COMPONENT library)
install(DIRECTORY Examples/embedding DESTINATION ${MSPDI_DOCUMENTS}/Examples COMPONENT library)

# --- The Debian packages ---
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${MSPDI_PACKAGE})
set(CPACK_PACKAGE_CONTACT "MSPDIExport maintainers <maintainers@korvella.example>")
set(CPACK_PACKAGE_VENDOR "MSPDIExport maintainers")
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL program library)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME ${MSPDI_PACKAGE})
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "Export Korvella plans to Microsoft Project XML
mspdi-export reads a Korvella document bundle (.kvdx) and writes the Microsoft
Project XML file that one sends. MSPDIExport writes the exact one, without the
corrections for those who open it; mspdi-export-all writes either for many
bundles at a time, mspdi-conform corrects an exact file later, and mspdi-page
shows any of them as a page in a browser.")
# mspdi-export-all needs GNU parallel, and zones need the zone data; shlibdeps finds only the libraries of programs.
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "parallel, tzdata")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libmspdi-dev)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "Export Korvella plans to Microsoft Project XML (library)
The static library of MSPDIExport with its headers and CMake package, for
programs that export a Korvella document bundle themselves.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS
  "libarchive-dev, libpugixml-dev, libxml2-dev, libicu-dev, libfmt-dev, libtomlplusplus-dev, tzdata")

# Debian requires a changelog and a copyright file in each package.
string(TIMESTAMP MSPDI_NOW "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(MSPDI_PACKAGES ${CPACK_DEBIAN_PROGRAM_PACKAGE_NAME} ${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME})
foreach(component package IN ZIP_LISTS CPACK_COMPONENTS_ALL MSPDI_PACKAGES)
  set(changelog ${PROJECT_BINARY_DIR}/${package}.changelog)
  file(WRITE ${changelog} "${package} (${PROJECT_VERSION}) UNRELEASED; urgency=medium\n\n"
    "  * See CHANGELOG.md in the source or in the package ${MSPDI_PACKAGE}.\n\n"
    " -- ${CPACK_PACKAGE_CONTACT}  ${MSPDI_NOW}\n")
  mspdi_compress(${changelog} ${changelog}.gz)
  set(folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package})
  install(FILES ${changelog}.gz DESTINATION ${folder} RENAME changelog.gz COMPONENT ${component})
  install(FILES COPYRIGHT DESTINATION ${folder} RENAME copyright COMPONENT ${component})
endforeach()
include(CPack)
