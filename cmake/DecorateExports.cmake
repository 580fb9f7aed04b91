# The 32-bit DLL's module-definition file.  WINAPI entries are decorated
# as NAME@BYTES in the objects; the .def names them so, and --kill-at then
# exports the plain names while the import library keeps the decorated
# symbols that C and C++ callers reference.  The byte counts are read from
# the objects themselves, so the export list never has to carry them.
#   cmake -DNM=... -DLIST=exports.txt -DDEF_OUT=... -DOBJECTS=a.obj|b.obj -P DecorateExports.cmake
string(REPLACE "|" ";" OBJECTS "${OBJECTS}")
execute_process(COMMAND "${NM}" -g --defined-only ${OBJECTS} OUTPUT_VARIABLE symbols RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "${NM} failed on the library's objects")
endif()
file(STRINGS "${LIST}" lines)
set(def "LIBRARY VLCORE.dll\nEXPORTS\n")
foreach(line IN LISTS lines)
  # Entries marked "windows" belong to the DLL like every other.
  if(NOT line MATCHES "^([A-Za-z_0-9]+) ([0-9]+)( windows)?$")
    continue()
  endif()
  set(name "${CMAKE_MATCH_1}")
  set(ordinal "${CMAKE_MATCH_2}")
  if(symbols MATCHES " T _${name}(@[0-9]+)\n")
    set(name "${name}${CMAKE_MATCH_1}")
  endif()
  string(APPEND def "    ${name} @${ordinal}\n")
endforeach()
file(WRITE "${DEF_OUT}.tmp" "${def}")
file(COPY_FILE "${DEF_OUT}.tmp" "${DEF_OUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${DEF_OUT}.tmp")
