# Called by CPack: compresses the manual pages of the package, as Debian wants them. Without the time of the file,
# so that equal pages become equal files.

file(GLOB pages "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/man/man*/*.[1-9]")
if(NOT pages)
    message(FATAL_ERROR "There is no manual page in ${CPACK_TEMPORARY_INSTALL_DIRECTORY}.")
endif()
execute_process(COMMAND gzip -9 --no-name ${pages} COMMAND_ERROR_IS_FATAL ANY)
