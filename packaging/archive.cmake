# Run by CPack over the folder that it is about to pack: the archive may be unpacked anywhere, so its desktop
# entry names the program without a path. `installer-menu` writes the entry that knows the place.
include(${CMAKE_CURRENT_LIST_DIR}/entries.cmake)
zelvion_write_entries("${CPACK_TEMPORARY_DIRECTORY}" zelvion ${CPACK_PACKAGE_VERSION} "${CPACK_ZELVION_SITE}")
