# Read by ctest: adds a test for each suite of a test program, which writes the outcome of its cases into
# results/PROGRAM.SUITE.xml. One process for all cases of a suite: under Wine and the sanitizers the start of a process
# takes longer than most cases.
#   program   the test program; what is not built has no tests
#   emulator  what runs it, if it is for another system
#   folder    where it runs, holds results/
#   name      its name
#   labels    of its tests
if(NOT EXISTS "${program}")
  return()
endif()
set(list "${folder}/${name}_suites.txt")
if("${program}" IS_NEWER_THAN "${list}")
  execute_process(COMMAND ${emulator} "${program}" --gtest_list_tests WORKING_DIRECTORY "${folder}"
    OUTPUT_VARIABLE listed RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    # A test that fails and says why.
    add_test(${name} ${emulator} "${program}" --gtest_list_tests)
    return()
  endif()
  # The names of suites begin their line and end in a point; those of their cases are indented.
  string(REGEX MATCHALL "(^|\n)[A-Za-z0-9_/]+\\." suites "${listed}")
  list(TRANSFORM suites REPLACE "[\n.]" "")
  file(WRITE "${list}" "${suites}")
endif()
file(READ "${list}" suites)
foreach(suite IN LISTS suites)
  string(REPLACE "/" "_" file "${suite}")
  add_test("${name}.${suite}" ${emulator} "${program}" "--gtest_filter=${suite}.*" --gtest_brief=1
    "--gtest_output=xml:results/${name}.${file}.xml")
  set_tests_properties("${name}.${suite}" PROPERTIES WORKING_DIRECTORY "${folder}" TIMEOUT 900)
  if(labels)
    set_tests_properties("${name}.${suite}" PROPERTIES LABELS "${labels}")
  endif()
endforeach()
