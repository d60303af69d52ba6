# `cmake --install BUILD --prefix FOLDER` and `cmake --build BUILD --target package`.
#
# The program, its data files and the results that it will write lie beside each other in FOLDER itself, which
# is therefore to be a folder of the user's. What belongs to the desktop goes into share/ below it.
include(${CMAKE_CURRENT_LIST_DIR}/entries.cmake)
set(packaging ${CMAKE_CURRENT_LIST_DIR})
set(hicolor share/icons/hicolor)

install(TARGETS zelvion velmoire RUNTIME DESTINATION .)
install(FILES ${data_files} ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/README.md DESTINATION .)
install(PROGRAMS ${packaging}/installer-menu DESTINATION .)
install(FILES ${PROJECT_SOURCE_DIR}/docs/mode-d-emploi.html DESTINATION docs)
install(FILES ${PROJECT_SOURCE_DIR}/docs/velmoire.1 DESTINATION share/man/fr/man1)
install(FILES ${packaging}/velmoire.bash DESTINATION share/bash-completion/completions RENAME velmoire)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/images DESTINATION docs FILES_MATCHING PATTERN "*.png")
foreach(size 16 32 48 64 128 256)
  install(FILES ${packaging}/icons/zelvion-${size}.png
          DESTINATION ${hicolor}/${size}x${size}/apps RENAME ${ZELVION_ID}.png)
endforeach()
install(FILES ${packaging}/icons/zelvion.svg DESTINATION ${hicolor}/scalable/apps RENAME ${ZELVION_ID}.svg)

# The desktop entry names the place of the program, which is known when it is installed.
install(CODE "
  include(\"${packaging}/entries.cmake\")
  zelvion_write_entries(\"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\" \"\${CMAKE_INSTALL_PREFIX}/zelvion\"
                        \"${PROJECT_VERSION}\" \"${ZELVION_SITE}\")")

set(CPACK_GENERATOR TGZ)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR})
set(CPACK_PACKAGE_NAME zelvion)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME zelvion-${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Itérations de la somme des puissances des chiffres")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${packaging}/archive.cmake)
set(CPACK_ZELVION_SITE ${ZELVION_SITE})
include(CPack)
