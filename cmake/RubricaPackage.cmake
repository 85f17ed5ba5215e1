# What users install: the engine as one library, shared and static, with its public headers; the tools; the component.
# Four packages, of the install components "runtime", "development", "tools" and "component".
include_guard(GLOBAL)
include(CMakePackageConfigHelpers)
find_package(Python3 3.11 REQUIRED COMPONENTS Interpreter)

set(packaging "${PROJECT_SOURCE_DIR}/cmake/package")
set(package_build "${PROJECT_BINARY_DIR}/package")

# ---- The library: the objects of the two file forms and of all folders that they use.

# rubrica_closure(OUT FOLDER...): these folders and all below them, by the names of their targets.
function(rubrica_closure out)
  set(found "")
  set(todo ${ARGN})
  while(todo)
    list(POP_FRONT todo folder)
    string(REPLACE "/" "_" name ${folder})
    if(NOT name IN_LIST found)
      list(APPEND found ${name})
      get_property(uses GLOBAL PROPERTY RUBRICA_USES_${name})
      list(APPEND todo ${uses})
    endif()
  endwhile()
  set(${out} ${found} PARENT_SCOPE)
endfunction()

rubrica_closure(folders biff xml)
set(objects "")
set(externals "")
foreach(folder ${folders})
  list(APPEND objects $<TARGET_OBJECTS:rubrica_${folder}>)
  get_property(libraries GLOBAL PROPERTY RUBRICA_LIBRARIES_${folder})
  list(APPEND externals ${libraries})
endforeach()
list(REMOVE_DUPLICATES externals)

# What a user of the static library needs of each library beneath it: the lines that find it in CMake, its pkg-config
# module, its Debian package. The folders found them for themselves: an imported target is seen in its own folder alone.
set(find_lines "")
set(pc_modules "")
set(deb_packages "")
foreach(external ${externals})
  if(external STREQUAL "Freetype::Freetype")
    find_package(Freetype REQUIRED)
    list(APPEND find_lines "find_dependency(Freetype)")
    list(APPEND pc_modules freetype2)
    list(APPEND deb_packages libfreetype-dev)
  elseif(external STREQUAL "Fontconfig::Fontconfig")
    find_package(Fontconfig REQUIRED)
    list(APPEND find_lines "find_dependency(Fontconfig)")
    list(APPEND pc_modules fontconfig)
    list(APPEND deb_packages libfontconfig-dev)
  elseif(external STREQUAL "ZLIB::ZLIB")
    find_package(ZLIB REQUIRED)
    list(APPEND find_lines "find_dependency(ZLIB)")
    list(APPEND pc_modules zlib)
    list(APPEND deb_packages zlib1g-dev)
  elseif(external MATCHES "^PkgConfig::(.+)$")
    set(module ${CMAKE_MATCH_1})
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(${module} REQUIRED IMPORTED_TARGET ${module})
    list(APPEND find_lines "find_dependency(PkgConfig)"
                           "pkg_check_modules(${module} REQUIRED IMPORTED_TARGET GLOBAL ${module})")
    list(APPEND pc_modules ${module})
    list(APPEND deb_packages ${module}-dev)
  elseif(WIN32)
    list(APPEND pc_modules "")
  else()
    message(FATAL_ERROR "RubricaPackage.cmake doesn't know how users find ${external}: add it to the list here")
  endif()
endforeach()
list(JOIN find_lines "\n" RUBRICA_FIND_LINES)
list(JOIN pc_modules " " RUBRICA_PC_MODULES)
list(JOIN deb_packages ", " RUBRICA_DEB_PACKAGES)

set(public_headers address auto_filter book book_ptr date_serial enums export font format sheet xlerror)
list(TRANSFORM public_headers PREPEND "${PROJECT_SOURCE_DIR}/engine/")
list(TRANSFORM public_headers APPEND ".h")

foreach(kind shared static)
  string(TOUPPER ${kind} cmake_kind)
  add_library(rubrica_public_${kind} ${cmake_kind} ${objects})
  target_include_directories(rubrica_public_${kind} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/rubrica>)
  target_compile_features(rubrica_public_${kind} INTERFACE cxx_std_20)
  target_link_libraries(rubrica_public_${kind} PRIVATE ${externals})
  set_target_properties(rubrica_public_${kind} PROPERTIES
    OUTPUT_NAME rubrica EXPORT_NAME ${kind} LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    ARCHIVE_OUTPUT_DIRECTORY "${package_build}" LIBRARY_OUTPUT_DIRECTORY "${package_build}")
endforeach()
if(UNIX AND NOT APPLE)
  set_target_properties(rubrica_public_shared PROPERTIES LINK_DEPENDS "${packaging}/exports.map")
  target_link_options(rubrica_public_shared PRIVATE "-Wl,--version-script,${packaging}/exports.map" -Wl,-z,defs)
  if(RUBRICA_SANITIZE)
    # The sanitizers' functions are found in the program only.
    target_link_options(rubrica_public_shared PRIVATE -Wl,-z,undefs)
  endif()
endif()

install(TARGETS rubrica_public_shared EXPORT rubricaShared
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
install(TARGETS rubrica_public_static EXPORT rubricaStatic
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(FILES ${public_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/rubrica/engine COMPONENT development)

set(cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/rubrica)
foreach(kind Shared Static)
  install(EXPORT rubrica${kind} NAMESPACE rubrica:: DESTINATION ${cmake_dir} COMPONENT development)
endforeach()
configure_package_config_file("${packaging}/rubricaConfig.cmake.in" "${package_build}/rubricaConfig.cmake"
  INSTALL_DESTINATION ${cmake_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${package_build}/rubricaConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${package_build}/rubricaConfig.cmake" "${package_build}/rubricaConfigVersion.cmake"
  DESTINATION ${cmake_dir} COMPONENT development)

# The modules of pkg-config find their files from where they stand, so that a tree can be moved.
file(RELATIVE_PATH RUBRICA_PC_PREFIX "/p/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/p")
foreach(module rubrica rubrica-static)
  configure_file("${packaging}/${module}.pc.in" "${package_build}/${module}.pc" @ONLY)
  install(FILES "${package_build}/${module}.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()

# ---- Tools, manual pages, documents

install(TARGETS rubrica-bench rubrica-check rubrica-convert rubrica-diff rubrica-dump omnis-run
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/man/" DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools
  FILES_MATCHING PATTERN "*.1")
# As in the repository, so that the links between them lead somewhere.
install(FILES README.md HACKING.md CONTRIBUTING.md CHANGELOG.md SECURITY.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development
  FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.svg" PATTERN "man" EXCLUDE)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT tools
  FILES_MATCHING PATTERN "*.omn" PATTERN "*.csv" PATTERN "*.xls")

# ---- The component with its reference

file(GLOB resources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/host/resources/*.toml")
set(reference "${package_build}/TabulixU-reference")
add_custom_command(OUTPUT "${reference}/constants.md"
  COMMAND Python3::Interpreter "${PROJECT_SOURCE_DIR}/scripts/generate_resources.py" reference "${reference}" ${resources}
  DEPENDS "${PROJECT_SOURCE_DIR}/scripts/generate_resources.py" ${resources}
  COMMENT "Generating the component's reference" VERBATIM)
set(cpp_reference "${package_build}/cpp-reference")
set(documented_headers ${public_headers})
list(FILTER documented_headers EXCLUDE REGEX "/export\\.h$")
add_custom_command(OUTPUT "${cpp_reference}/cpp_book.md"
  COMMAND Python3::Interpreter "${PROJECT_SOURCE_DIR}/scripts/generate_cpp_reference.py" "${cpp_reference}"
          ${documented_headers}
  DEPENDS "${PROJECT_SOURCE_DIR}/scripts/generate_cpp_reference.py" ${documented_headers}
  COMMENT "Generating the reference of the C++ interface" VERBATIM)
add_custom_target(component_reference ALL DEPENDS "${reference}/constants.md" "${cpp_reference}/cpp_book.md")
install(DIRECTORY "${reference}/" "${cpp_reference}/" DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs/reference
  COMPONENT development)
install(TARGETS TabulixU LIBRARY DESTINATION "${RUBRICA_COMPONENT_DIR}" COMPONENT component)
install(DIRECTORY "${reference}" DESTINATION "${RUBRICA_COMPONENT_DIR}" COMPONENT component)

# ---- Packages

set(CPACK_PACKAGE_NAME rubrica)
set(CPACK_PACKAGE_VENDOR "Tabulix")
set(CPACK_PACKAGE_CONTACT "The Tabulix developers <tabulix@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Excel workbooks without Excel")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DIRECTORY "${package_build}/dist")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development tools component)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME librubrica${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "Excel workbooks without Excel: the engine")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${packaging}/triggers")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME librubrica-dev)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "Excel workbooks without Excel: headers, static library, documents")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "librubrica${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}), ${RUBRICA_DEB_PACKAGES}")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME rubrica-tools)
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "Excel workbooks without Excel: dump, compare, convert and check them")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_COMPONENT_PACKAGE_NAME tabulix)
set(CPACK_DEBIAN_COMPONENT_DESCRIPTION "Excel workbooks without Excel: the component for Omnis Studio")
include(CPack)
