# Read by CPack before it packs: what goes into which kind of package.
if(CPACK_GENERATOR STREQUAL "DEB")
  set(CPACK_COMPONENTS_ALL debian)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
else()
  set(CPACK_COMPONENTS_ALL Unspecified)
  set(CPACK_PRE_BUILD_SCRIPTS ${CPACK_ZELVION_PACKAGING}/archive.cmake)
endif()
