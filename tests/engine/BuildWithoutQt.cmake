# Configures and builds the layout model and engine alone, with Qt switched
# off, so that any toolkit include in them fails the build.
execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${BINARY_DIR} -G ${GENERATOR}
            -DVELMORA_BUILD_QT=OFF -DVELMORA_BUILD_TESTS=OFF -DVELMORA_BUILD_BENCH=OFF
            -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON
    RESULT_VARIABLE configured)
if(NOT configured EQUAL 0)
    message(FATAL_ERROR "configuring the engine without Qt failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${BINARY_DIR} RESULT_VARIABLE built)
if(NOT built EQUAL 0)
    message(FATAL_ERROR "building the engine without Qt failed")
endif()
