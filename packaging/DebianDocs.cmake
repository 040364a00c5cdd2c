# The files that Debian requires in each package's folder of documents, and manual pages compressed its way.
find_program(GZIP_PROGRAM gzip REQUIRED)

configure_file(debian/changelog.in "${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian" @ONLY)

foreach(component runtime dev tools)
  set(folder "${CMAKE_INSTALL_DATADIR}/doc/${${component}_package}")
  install(FILES debian/copyright DESTINATION "${folder}" COMPONENT ${component})
  install(FILES "${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian" DESTINATION "${folder}" COMPONENT ${component})
  install(FILES "${PROJECT_SOURCE_DIR}/CHANGELOG.md" RENAME changelog DESTINATION "${folder}" COMPONENT ${component})
  install(CODE "execute_process(COMMAND \"${GZIP_PROGRAM}\" -9nf
    \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}/changelog\"
    \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}/changelog.Debian\" COMMAND_ERROR_IS_FATAL ANY)" COMPONENT ${component})
endforeach()
install(CODE "file(GLOB pages \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1/*.1\")
  execute_process(COMMAND \"${GZIP_PROGRAM}\" -9nf \${pages} COMMAND_ERROR_IS_FATAL ANY)" COMPONENT tools)
