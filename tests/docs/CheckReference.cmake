# The README's Reference section is what the component says of itself
# (velmora-preview --reference); scripts/update-reference.sh rewrites it.
#   cmake -DPREVIEW=... -DREADME=... -P CheckReference.cmake
execute_process(COMMAND "${CMAKE_COMMAND}" -E env QT_QPA_PLATFORM=offscreen "${PREVIEW}" --reference
                RESULT_VARIABLE rc OUTPUT_VARIABLE generated ERROR_QUIET)
if(NOT rc EQUAL 0)
    message(FATAL_ERROR "velmora-preview --reference failed (${rc})")
endif()
file(READ "${README}" readme)
set(begin "<!-- reference:begin -->\n")
set(end "<!-- reference:end -->")
string(FIND "${readme}" "${begin}" at)
string(FIND "${readme}" "${end}" stop)
if(at LESS 0 OR stop LESS at)
    message(FATAL_ERROR "README.md has no reference:begin / reference:end markers")
endif()
string(LENGTH "${begin}" skip)
math(EXPR from "${at} + ${skip}")
math(EXPR length "${stop} - ${from}")
string(SUBSTRING "${readme}" ${from} ${length} written)
if(NOT written STREQUAL generated)
    message(FATAL_ERROR "README.md's Reference differs from what velmora-preview --reference says: "
                        "run scripts/update-reference.sh")
endif()
message(STATUS "README.md's Reference is current")
