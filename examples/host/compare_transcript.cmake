# Runs the host on a script and compares its transcript with the expected
# one, line ends aside; the transcript stays in ACTUAL for a look.
#   console host: the transcript is its standard output;
#   window host:  SCREENSHOT given, the script is typed into the script
#                 window and the window's text is the transcript.
get_filename_component(dir "${ACTUAL}" DIRECTORY)
file(MAKE_DIRECTORY "${dir}")
file(REMOVE "${ACTUAL}")
if(SCREENSHOT)
  file(REMOVE "${SCREENSHOT}")
  execute_process(COMMAND ${EMULATOR} ${HOST} --demo ${SCRIPT} --transcript ${ACTUAL} --screenshot ${SCREENSHOT}
                  RESULT_VARIABLE status TIMEOUT 240)
  if(NOT EXISTS "${ACTUAL}")
    message(FATAL_ERROR "the window host (status ${status}) left no transcript")
  endif()
  file(READ "${ACTUAL}" actual)
else()
  execute_process(COMMAND ${EMULATOR} ${HOST} ${SCRIPT}
                  OUTPUT_VARIABLE actual RESULT_VARIABLE status)
  file(WRITE "${ACTUAL}" "${actual}")
endif()
string(REPLACE "\r\n" "\n" actual "${actual}")
file(READ "${EXPECTED}" expected)
string(REPLACE "\r\n" "\n" expected "${expected}")
if(NOT actual STREQUAL expected)
  message(FATAL_ERROR "transcript differs from ${EXPECTED}; it is in ${ACTUAL}:\n${actual}")
endif()
if(NOT status EQUAL 0)
  message(FATAL_ERROR "host ended with ${status}")
endif()
if(SCREENSHOT)
  # 620 x 440 pixels at 24 bits: a header of 54 bytes and 1860 bytes a row.
  file(SIZE "${SCREENSHOT}" size)
  if(NOT size EQUAL 818454)
    message(FATAL_ERROR "screenshot ${SCREENSHOT} has ${size} bytes, not those of a 620 x 440 window")
  endif()
endif()
