# Turns resources/strings.tsv into the Windows resource script and the
# native string table, so both builds carry the same texts.
#   cmake -DSTRINGS=... -DRC_IN=... -DRC_OUT=... -DINC_OUT=... -P GenerateResources.cmake
file(STRINGS "${STRINGS}" lines ENCODING UTF-8)
set(rc_rows "")
set(inc_rows "")
foreach(line IN LISTS lines)
  if(line MATCHES "^#" OR line STREQUAL "")
    continue()
  endif()
  if(NOT line MATCHES "^([0-9]+)\t(.*)$")
    message(FATAL_ERROR "strings.tsv: bad row '${line}'")
  endif()
  set(id "${CMAKE_MATCH_1}")
  set(text "${CMAKE_MATCH_2}")
  # Resource scripts double their quotes; C++ escapes backslashes and quotes.
  string(REPLACE "\"" "\"\"" rc_text "${text}")
  string(REPLACE "\\" "\\\\" c_text "${text}")
  string(REPLACE "\"" "\\\"" c_text "${c_text}")
  # A backslash and n stands for a line break (a row can't hold one); the
  # resource compiler reads the same escape itself.
  string(REPLACE "\\\\n" "\\n" c_text "${c_text}")
  string(APPEND rc_rows "    ${id}, \"${rc_text}\"\n")
  string(APPEND inc_rows "    {${id}, \"${c_text}\"},\n")
endforeach()
set(VLCORE_STRINGTABLE "STRINGTABLE\nBEGIN\n${rc_rows}END")
configure_file("${RC_IN}" "${RC_OUT}" @ONLY)
file(WRITE "${INC_OUT}.tmp" "// Generated from resources/strings.tsv; do not edit.\n${inc_rows}")
file(COPY_FILE "${INC_OUT}.tmp" "${INC_OUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${INC_OUT}.tmp")
