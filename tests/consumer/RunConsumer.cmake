# Installs the build into a temporary prefix, then configures, builds and
# runs the consumer, and the uic example as a project of its own, against
# that prefix alone.
#   cmake -DBUILD_DIR=... -DWORK_DIR=... -DSOURCE_DIR=... -DEXAMPLE_DIR=... -DGENERATOR=... -P RunConsumer.cmake
file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")

function(run what)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "${what} failed (${rc}):\n${out}")
    endif()
    message(STATUS "${what}: ok")
    set(last_output "${out}" PARENT_SCOPE)
endfunction()

run("install into ${prefix}" "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}")
run("configure the consumer" "${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${prefix}" -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF
    -DCMAKE_FIND_PACKAGE_NO_SYSTEM_PACKAGE_REGISTRY=ON)
file(READ "${WORK_DIR}/build/CMakeCache.txt" cache)
string(REGEX MATCH "Velmora_DIR:PATH=[^\n]*" found "${cache}")
if(NOT found MATCHES "=${prefix}/")
    message(FATAL_ERROR "the consumer found another Velmora: ${found}")
endif()
run("build the consumer" "${CMAKE_COMMAND}" --build "${WORK_DIR}/build")
file(GLOB plugins LIST_DIRECTORIES true "${prefix}/lib/*/qt6/plugins")
run("run the consumer" "${CMAKE_COMMAND}" -E env QT_QPA_PLATFORM=offscreen "QT_PLUGIN_PATH=${plugins}"
    "${WORK_DIR}/build/consumer" "${prefix}")
message("${last_output}")

# A form from Designer, through uic, against the installed headers.
run("configure the uic example" "${CMAKE_COMMAND}" -S "${EXAMPLE_DIR}" -B "${WORK_DIR}/example" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${prefix}" -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF)
run("build the uic example" "${CMAKE_COMMAND}" --build "${WORK_DIR}/example")
run("run the uic example" "${CMAKE_COMMAND}" -E env QT_QPA_PLATFORM=offscreen
    "${WORK_DIR}/example/uic-form" --grab 960x640 "${WORK_DIR}/example/form.png")
if(NOT last_output MATCHES "cmdOK 860 600 80 28")
    message(FATAL_ERROR "the uic example did not scale as built in the tree:\n${last_output}")
endif()
