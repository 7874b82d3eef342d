# Links in the installed documents: those into folders of the repository lead to where the kit has them, and
# those to what it doesn't have become plain text. A script of the installation, which sets the folder of
# the documents and those of the kit:
#   DOCUMENTS INCLUDES DATA
file(GLOB_RECURSE pages "${DOCUMENTS}/*.md")
foreach(page IN LISTS pages)
  get_filename_component(folder "${page}" DIRECTORY)
  file(RELATIVE_PATH includes "${folder}" "${INCLUDES}")
  file(RELATIVE_PATH data "${folder}" "${DATA}")
  file(READ "${page}" text)
  string(REGEX REPLACE "\\]\\((\\.\\./)?sdk/" "](${includes}/" text "${text}")
  string(REGEX REPLACE "\\]\\((\\.\\./)?examples/" "](${data}/examples/" text "${text}")
  string(REGEX REPLACE "\\]\\((\\.\\./)?devkit/host/modules" "](${data}/hostmodules" text "${text}")
  string(REGEX REPLACE "\\[([^]]+)\\]\\((\\.\\./)?(devkit|closedlibs)[^)]*\\)" "\\1" text "${text}")
  file(WRITE "${page}" "${text}")
endforeach()
