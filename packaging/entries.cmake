# Writes the desktop entry and the AppStream metainfo into share/ of a folder.
#
# As a function:  zelvion_write_entries(FOLDER PROGRAM VERSION SITE)
# As a script:    cmake -DFOLDER=... -DPROGRAM=... -DVERSION=... -DSITE=... -P entries.cmake
#
# PROGRAM is what the desktop entry starts: the absolute path of the program, beside which its manual lies in docs/, or
# its name alone, that of a command which also takes --mode-d-emploi and --dossier.
set(ZELVION_ID example.tolque.zelvion)
set(ZELVION_ENTRIES_DIR ${CMAKE_CURRENT_LIST_DIR})

# In Exec a path stands in quotes, with a backslash before what is special there; "%" starts a field code; and in every
# value a backslash is written twice.
function(zelvion_quote path result)
  foreach(special "\\" "\"" "`" "$")
    string(REPLACE "${special}" "\\${special}" path "${path}")
  endforeach()
  string(REPLACE "%" "%%" path "${path}")
  string(REPLACE "\\" "\\\\" path "${path}")
  set(${result} "\"${path}\"" PARENT_SCOPE)
endfunction()

function(zelvion_write_entries folder program ZELVION_VERSION ZELVION_SITE)
  if(IS_ABSOLUTE "${program}")
    cmake_path(GET program PARENT_PATH place)
    zelvion_quote("${program}" ZELVION_EXEC)
    zelvion_quote("${place}/docs/mode-d-emploi.html" manual)
    zelvion_quote("${place}" results)
    set(ZELVION_EXEC_MANUAL "xdg-open ${manual}")
    set(ZELVION_EXEC_FOLDER "xdg-open ${results}")
    string(REPLACE "\\" "\\\\" try_exec "${program}")
    set(ZELVION_TRY_EXEC "TryExec=${try_exec}\n")
  else()
    set(ZELVION_EXEC "${program}")
    set(ZELVION_EXEC_MANUAL "${program} --mode-d-emploi")
    set(ZELVION_EXEC_FOLDER "${program} --dossier")
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
