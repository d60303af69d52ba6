# `cmake --install BUILD --prefix FOLDER` and `cmake --build BUILD --target package`.
#
# The program, its data files and the results that it will write lie beside each other in FOLDER itself, which
# is therefore to be a folder of the user's. What belongs to the desktop goes into share/ below it.
include(${CMAKE_CURRENT_LIST_DIR}/entries.cmake)
set(packaging ${CMAKE_CURRENT_LIST_DIR})
set(hicolor share/icons/hicolor)

install(TARGETS zelvion zelvion-atlas velmoire RUNTIME DESTINATION .)
install(FILES ${data_files} ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION .)
install(FILES ${packaging}/README.archive DESTINATION . RENAME LISEZMOI.txt)
install(PROGRAMS ${packaging}/installer-menu DESTINATION .)
install(FILES ${PROJECT_SOURCE_DIR}/docs/mode-d-emploi.html DESTINATION docs)
install(FILES ${PROJECT_SOURCE_DIR}/docs/velmoire.1 DESTINATION share/man/fr/man1)
install(FILES ${packaging}/velmoire.bash DESTINATION share/bash-completion/completions RENAME velmoire)
install(FILES ${packaging}/velmoire.zsh DESTINATION share/zsh/site-functions RENAME _velmoire)
install(FILES ${packaging}/velmoire.fish DESTINATION share/fish/vendor_completions.d)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/images ${PROJECT_SOURCE_DIR}/docs/atlas DESTINATION docs)
foreach(program zelvion zelvion-atlas)
  foreach(size 16 32 48 64 128 256)
    install(FILES ${packaging}/icons/${program}-${size}.png
            DESTINATION ${hicolor}/${size}x${size}/apps RENAME ${ZELVION_VENDOR}.${program}.png)
  endforeach()
  install(FILES ${packaging}/icons/${program}.svg
          DESTINATION ${hicolor}/scalable/apps RENAME ${ZELVION_VENDOR}.${program}.svg)
endforeach()

# The desktop entry names the place of the program, which is known when it is installed.
install(CODE "
  include(\"${packaging}/entries.cmake\")
  zelvion_write_entries(\"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\" \"\${CMAKE_INSTALL_PREFIX}/zelvion\"
                        \"${PROJECT_VERSION}\" \"${ZELVION_SITE}\")")

# The Debian package parts all that among the folders of the system: `cpack -G DEB --config BUILD/CPackConfig.cmake`. Its
# command `zelvion` puts the program and its data into a folder of the user's.
set(staged ${PROJECT_BINARY_DIR}/debian)
zelvion_write_entries(${staged} zelvion ${PROJECT_VERSION} ${ZELVION_SITE})
foreach(page packaging/debian/zelvion.1 packaging/debian/zelvion-atlas.1 docs/velmoire.1 packaging/debian/changelog)
  get_filename_component(name ${page} NAME)
  execute_process(COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/${page} OUTPUT_FILE ${staged}/${name}.gz)
endforeach()
macro(install_debian)
  install(${ARGN} COMPONENT debian EXCLUDE_FROM_ALL)
endmacro()
install_debian(TARGETS zelvion RUNTIME DESTINATION lib/zelvion)
install_debian(TARGETS velmoire zelvion-atlas RUNTIME DESTINATION bin)
install_debian(PROGRAMS ${packaging}/debian/zelvion DESTINATION bin)
install_debian(FILES ${data_files} DESTINATION share/zelvion)
install_debian(FILES ${PROJECT_SOURCE_DIR}/docs/mode-d-emploi.html ${packaging}/debian/copyright ${staged}/changelog.gz
               DESTINATION share/doc/zelvion)
install_debian(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/images ${PROJECT_SOURCE_DIR}/docs/atlas DESTINATION share/doc/zelvion)
install_debian(DIRECTORY ${staged}/share/ DESTINATION share)
install_debian(FILES ${staged}/zelvion.1.gz ${staged}/zelvion-atlas.1.gz ${staged}/velmoire.1.gz DESTINATION share/man/fr/man1)
install_debian(FILES ${staged}/zelvion.1.gz ${staged}/zelvion-atlas.1.gz ${staged}/velmoire.1.gz DESTINATION share/man/man1)
install_debian(FILES ${packaging}/velmoire.bash DESTINATION share/bash-completion/completions RENAME velmoire)
install_debian(FILES ${packaging}/velmoire.zsh DESTINATION share/zsh/vendor-completions RENAME _velmoire)
install_debian(FILES ${packaging}/velmoire.fish DESTINATION share/fish/vendor_completions.d)
foreach(program zelvion zelvion-atlas)
  foreach(size 16 32 48 64 128 256)
    install_debian(FILES ${packaging}/icons/${program}-${size}.png
                   DESTINATION ${hicolor}/${size}x${size}/apps RENAME ${ZELVION_VENDOR}.${program}.png)
  endforeach()
  install_debian(FILES ${packaging}/icons/${program}.svg
                 DESTINATION ${hicolor}/scalable/apps RENAME ${ZELVION_VENDOR}.${program}.svg)
endforeach()

set(CPACK_GENERATOR TGZ)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR})
set(CPACK_PACKAGE_NAME zelvion)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME zelvion-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Itérations de la somme des puissances des chiffres")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PROJECT_CONFIG_FILE ${packaging}/generators.cmake)
set(CPACK_ZELVION_SITE ${ZELVION_SITE})
set(CPACK_ZELVION_PACKAGING ${packaging})
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
    WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_NAME zelvion)
set(CPACK_DEBIAN_DEBIAN_PACKAGE_NAME zelvion)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "zelvion <zelvion@tolque.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION math)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-liberation, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, bash-completion")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${ZELVION_SITE})
set(CPACK_PACKAGE_DESCRIPTION
    "Pour une puissance k, un nombre va à la somme des puissances k de ses\nchiffres, et ainsi de suite. Une fenêtre et une commande cherchent les\ncycles, les points fixes et les nombres narcissiques, avec des nombres\nde toute taille.")
set(CPACK_COMPONENT_DEBIAN_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}")
include(CPack)
