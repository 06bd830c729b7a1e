# cmake -DREADME=FILE -DEXAMPLE=FILE -P check_readme.cmake
#
# Fails unless the one C++ block of README is EXAMPLE, byte for byte.
file(READ "${README}" readme)
file(READ "${EXAMPLE}" example)
set(opening "```cpp\n")
string(FIND "${readme}" "${opening}${example}```\n" position)
if(position EQUAL -1)
  message(FATAL_ERROR "${README} does not show ${EXAMPLE}")
endif()
string(FIND "${readme}" "${opening}" first)
string(FIND "${readme}" "${opening}" last REVERSE)
if(NOT first EQUAL last)
  message(FATAL_ERROR "${README} has a C++ block that no test compiles")
endif()
