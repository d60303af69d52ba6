# Writes the desktop entries and the AppStream metainfo into share/ of a folder.
#
# As a function:  zelvion_write_entries(FOLDER PROGRAM VERSION SITE)
# As a script:    cmake -DFOLDER=... -DPROGRAM=... -DVERSION=... -DSITE=... -P entries.cmake
#
# PROGRAM is what the first desktop entry starts, the second one PROGRAM-atlas: the absolute path of the program, beside which its manual and its atlas lie in
# docs/, or its name alone, that of a command which also takes --mode-d-emploi, --atlas and --dossier.
set(ZELVION_VENDOR example.tolque)
set(ZELVION_ID ${ZELVION_VENDOR}.zelvion)
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
    zelvion_quote("${place}/docs/atlas/index.html" atlas)
    zelvion_quote("${place}" results)
    set(ZELVION_EXEC_MANUAL "xdg-open ${manual}")
    set(ZELVION_EXEC_ATLAS "xdg-open ${atlas}")
    set(ZELVION_EXEC_FOLDER "xdg-open ${results}")
    string(REPLACE "\\" "\\\\" try_exec "${program}")
    set(ZELVION_TRY_EXEC "TryExec=${try_exec}\n")
    zelvion_quote("${program}-atlas" ZELVION_EXEC_EXPLORER)
    set(ZELVION_TRY_EXPLORER "TryExec=${try_exec}-atlas\n")
  else()
    set(ZELVION_EXEC "${program}")
    set(ZELVION_EXEC_MANUAL "${program} --mode-d-emploi")
    set(ZELVION_EXEC_ATLAS "${program} --atlas")
    set(ZELVION_EXEC_FOLDER "${program} --dossier")
    set(ZELVION_TRY_EXEC "")
    set(ZELVION_EXEC_EXPLORER "${program}-atlas")
    set(ZELVION_TRY_EXPLORER "")
  endif()
  foreach(id ${ZELVION_ID} ${ZELVION_ID}-atlas)
    configure_file(${ZELVION_ENTRIES_DIR}/${id}.desktop.in "${folder}/share/applications/${id}.desktop" @ONLY)
  endforeach()
  configure_file(${ZELVION_ENTRIES_DIR}/${ZELVION_ID}.metainfo.xml.in
                 "${folder}/share/metainfo/${ZELVION_ID}.metainfo.xml" @ONLY)
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  zelvion_write_entries("${FOLDER}" "${PROGRAM}" "${VERSION}" "${SITE}")
endif()
