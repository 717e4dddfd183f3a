# Reads the ELF headers of the file that -DFILE names with -DREADELF and -DOBJDUMP: tables that are read-only once
# the program runs (full RELRO), guarded stack frames, marked jump targets, and of a program that it
# can be loaded anywhere (PIE).
function(read_elf result)
  execute_process(COMMAND ${READELF} -W ${ARGN} ${FILE} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

function(expect text pattern what)
  if(NOT text MATCHES "${pattern}")
    message(SEND_ERROR "${FILE}: ${what}")
  endif()
endfunction()

read_elf(segments -l)
read_elf(dynamic -d)
read_elf(symbols --dyn-syms)
expect("${segments}" "GNU_RELRO" "no RELRO")
expect("${dynamic}" "BIND_NOW" "RELRO is not full")
expect("${segments}" "GNU_STACK +0x[0-9a-f]+ 0x[0-9a-f]+ 0x[0-9a-f]+ 0x[0-9a-f]+ 0x[0-9a-f]+ RW " "an executable stack")
expect("${symbols}" "__stack_chk_fail" "no stack protector")
if(CHECKED)
  expect("${symbols}" "_chk@" "no checked C functions")
endif()
# The note of the whole file needs a C library that was built in this way as well.
if(MARKED)
  execute_process(COMMAND ${OBJDUMP} -d --section=.text ${FILE} OUTPUT_VARIABLE code
                  COMMAND_ERROR_IS_FATAL ANY)
  expect("${code}" "endbr64" "jump targets are not marked")
endif()
if(PROGRAM)
  expect("${dynamic}" "Flags:.* PIE" "not position-independent")
endif()
