# The property catalogue (src/central/properties.tsv): built into the library
# as its fallback copy, copied into the build tree where the library finds
# it at run time (beside build/lib, as in an installation), and installed
# under share/qvglobal.
set(_props_src "${PROJECT_SOURCE_DIR}/src/central/properties.tsv")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${_props_src}")

file(READ "${_props_src}" QVGLOBAL_PROPERTIES_TEXT)
set(_props_cpp "${PROJECT_BINARY_DIR}/generated/builtin_properties.cpp")
file(CONFIGURE OUTPUT "${_props_cpp}" CONTENT
"// Generated from src/central/properties.tsv by the build.
#include \"central/internal/builtin_properties.h\"

namespace qv::central::internal {

const char* const kBuiltinProperties = R\"qvtsv(@QVGLOBAL_PROPERTIES_TEXT@)qvtsv\";

}  // namespace qv::central::internal
" @ONLY)
target_sources(qvglobal PRIVATE "${_props_cpp}")

# Where the data folder lies relative to the library folder, the same in the
# build tree and in an installation.
file(RELATIVE_PATH _lib_to_data
     "${CMAKE_INSTALL_FULL_LIBDIR}" "${CMAKE_INSTALL_FULL_DATADIR}")
set_property(SOURCE "${PROJECT_SOURCE_DIR}/src/central/property_catalog.cpp"
  APPEND PROPERTY COMPILE_DEFINITIONS QVGLOBAL_LIB_TO_DATA="${_lib_to_data}")
file(MAKE_DIRECTORY "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${_lib_to_data}/qvglobal")
configure_file("${_props_src}"
               "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${_lib_to_data}/qvglobal/properties.tsv"
               COPYONLY)
install(FILES "${_props_src}" DESTINATION "${CMAKE_INSTALL_DATADIR}/qvglobal")
