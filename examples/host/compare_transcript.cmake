# Runs the host on a script and compares its transcript with the expected
# one, line ends aside.  The transcript stays in ACTUAL for a look.
execute_process(COMMAND ${EMULATOR} ${HOST} --library ${LIBRARY} ${SCRIPT}
                OUTPUT_VARIABLE actual RESULT_VARIABLE status)
string(REPLACE "\r\n" "\n" actual "${actual}")
get_filename_component(dir "${ACTUAL}" DIRECTORY)
file(MAKE_DIRECTORY "${dir}")
file(WRITE "${ACTUAL}" "${actual}")
file(READ "${EXPECTED}" expected)
string(REPLACE "\r\n" "\n" expected "${expected}")
if(NOT actual STREQUAL expected)
  message(FATAL_ERROR "transcript differs from ${EXPECTED}; it is in ${ACTUAL}:\n${actual}")
endif()
# The script ends with failing lines on purpose: the host says so.
if(NOT status EQUAL 3)
  message(FATAL_ERROR "host ended with ${status}, not 3 (some lines failed)")
endif()
