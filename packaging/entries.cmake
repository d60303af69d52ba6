# Writes the desktop entry and the AppStream metainfo into share/ of a folder.
#
# As a function:  zelvion_write_entries(FOLDER PROGRAM VERSION SITE)
# As a script:    cmake -DFOLDER=... -DPROGRAM=... -DVERSION=... -DSITE=... -P entries.cmake
#
# PROGRAM is what the desktop entry starts: the absolute path of the program, or its name alone.
set(ZELVION_ID example.tolque.zelvion)
set(ZELVION_ENTRIES_DIR ${CMAKE_CURRENT_LIST_DIR})

function(zelvion_write_entries folder program ZELVION_VERSION ZELVION_SITE)
  # In Exec the path stands in quotes, with a backslash before what is special there; "%" starts a field code;
  # and in every value a backslash is written twice.
  set(exec "${program}")
  foreach(special "\\" "\"" "`" "$")
    string(REPLACE "${special}" "\\${special}" exec "${exec}")
  endforeach()
  string(REPLACE "%" "%%" exec "${exec}")
  string(REPLACE "\\" "\\\\" exec "${exec}")
  string(REPLACE "\\" "\\\\" try_exec "${program}")
  if(IS_ABSOLUTE "${program}")
    set(ZELVION_EXEC "\"${exec}\"")
    set(ZELVION_TRY_EXEC "TryExec=${try_exec}\n")
  else()
    set(ZELVION_EXEC "${program}")
    set(ZELVION_TRY_EXEC "")
  endif()
  configure_file(${ZELVION_ENTRIES_DIR}/${ZELVION_ID}.desktop.in
                 "${folder}/share/applications/${ZELVION_ID}.desktop" @ONLY)
  configure_file(${ZELVION_ENTRIES_DIR}/${ZELVION_ID}.metainfo.xml.in
                 "${folder}/share/metainfo/${ZELVION_ID}.metainfo.xml" @ONLY)
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  zelvion_write_entries("${FOLDER}" "${PROGRAM}" "${VERSION}" "${SITE}")
endif()
