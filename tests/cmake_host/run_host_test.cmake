# CTest driver: installs the engine from BUILD_DIR into WORK_DIR/prefix, configures and
# builds the host in this folder against it with find_package(Vorn3D), and runs it.
#   cmake -DBUILD_DIR=... -DWORK_DIR=... [-DLAUNCHER=ccache] -P run_host_test.cmake
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix}
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
set(launcher)
if(LAUNCHER)
  set(launcher -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER})
endif()
# Only the installed prefix is searched for the package, not the build tree.
execute_process(COMMAND ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${WORK_DIR}/build -G Ninja
                        -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH=${prefix}
                        -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF ${launcher}
                COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK_DIR}/build COMMAND_ERROR_IS_FATAL ANY)
file(MAKE_DIRECTORY ${WORK_DIR}/Resources)
execute_process(COMMAND ${WORK_DIR}/build/vorn3d_host ${WORK_DIR}/Resources COMMAND_ERROR_IS_FATAL ANY)
