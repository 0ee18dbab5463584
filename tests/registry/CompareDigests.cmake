# cmake -DPROGRAM=... -DEMULATOR=a|b|c -DEXPECTED=... -P CompareDigests.cmake: runs the digests program of
# this build (through the emulator of its architecture) and fails unless it prints what the build
# machine's printed.
string(REPLACE "|" ";" emulator "${EMULATOR}")
execute_process(COMMAND ${emulator} ${PROGRAM} OUTPUT_VARIABLE actual RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} failed: ${result}")
endif()
file(READ ${EXPECTED} expected)
if(NOT actual STREQUAL expected)
  file(WRITE ${PROGRAM}.digests "${actual}")
  message(FATAL_ERROR "the renders differ from the build machine's: compare ${PROGRAM}.digests with ${EXPECTED}")
endif()
