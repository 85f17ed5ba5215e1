# How the binding classes of a schema module come about: the generator in scripts/ turns the module's descriptions into
# C++ sources in the build directory. One rule a module, so that a changed description rebuilds its module only.
include_guard(GLOBAL)
find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter)

set(RUBRICA_GENERATED_DIR "${PROJECT_BINARY_DIR}/generated" CACHE INTERNAL "Generated sources, as an include path")
file(GLOB generator CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/scripts/generate_bindings.py" "${PROJECT_SOURCE_DIR}/scripts/bindings/*.py")
set(RUBRICA_GENERATOR ${generator} CACHE INTERNAL "What the generated sources depend on beside their descriptions")

# rubrica_bindings(OUT_VARIABLE NAMESPACE STEM... [PLAIN] [FOLDER folder])
# Adds the generated sources of one module to OUT_VARIABLE. PLAIN makes it with no class laid out by hand, under the
# given namespace; FOLDER is where its headers are included from, below the directory of generated files.
function(rubrica_bindings out namespace)
  cmake_parse_arguments(ARG "PLAIN" "FOLDER" "" ${ARGN})
  if(NOT ARG_FOLDER)
    set(ARG_FOLDER source/ooxml)
  endif()
  set(target "${RUBRICA_GENERATED_DIR}/${ARG_FOLDER}")
  set(descriptions "")
  set(sources "${target}/${namespace}.cpp")
  set(headers "${target}/${namespace}.h" "${target}/${namespace}_types.h")
  foreach(stem ${ARG_UNPARSED_ARGUMENTS})
    list(APPEND descriptions "${PROJECT_SOURCE_DIR}/source/ooxml/${stem}.desc")
    list(APPEND sources "${target}/${stem}.cpp")
    list(APPEND headers "${target}/${stem}.h")
  endforeach()
  set(options --folder "${ARG_FOLDER}")
  if(ARG_PLAIN)
    list(APPEND options --plain "${namespace}")
  endif()
  add_custom_command(
    OUTPUT ${sources} ${headers}
    COMMAND Python3::Interpreter -B "${PROJECT_SOURCE_DIR}/scripts/generate_bindings.py" ${options}
            "${RUBRICA_GENERATED_DIR}" ${descriptions}
    DEPENDS ${descriptions} ${RUBRICA_GENERATOR}
    COMMENT "Binding classes of ${namespace}" VERBATIM)
  set(${out} ${${out}} ${sources} ${headers} PARENT_SCOPE)
endfunction()
