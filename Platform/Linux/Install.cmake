# Where the program's files go on a Linux desktop.
include(GNUInstallDirs)
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)  # installing needs the program, not the tests

set(resources ${CMAKE_SOURCE_DIR}/Resources/Linux)
set(made ${CMAKE_CURRENT_BINARY_DIR}/installed)
set(identifier org.quillfade.Quillfade)
set(QUILLFADE_CONTACT "The Quillfade developers <developers@quillfade.org>" CACHE STRING "Who answers for packages")

configure_file(${resources}/${identifier}.metainfo.xml.in ${made}/${identifier}.metainfo.xml @ONLY)
configure_file(${resources}/quillfade.1.in ${made}/quillfade.1 @ONLY)
configure_file(${resources}/debian/changelog.in ${made}/changelog @ONLY)
foreach(text quillfade.1 changelog)
  execute_process(COMMAND gzip --best --no-name --force --keep ${made}/${text} COMMAND_ERROR_IS_FATAL ANY)
endforeach()

# The session bus starts a program only by its absolute path, which is not known before the installation.
set(service ${made}/${identifier}.service)
install(CODE "
  set(PROGRAM \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/quillfade\")
  configure_file(\"${resources}/${identifier}.service.in\" \"${service}\" @ONLY)
")

set(data ${CMAKE_INSTALL_DATADIR})
install(TARGETS quillfade)
install(FILES ${resources}/${identifier}.desktop DESTINATION ${data}/applications)
install(FILES ${service} DESTINATION ${data}/dbus-1/services)
install(FILES ${made}/${identifier}.metainfo.xml DESTINATION ${data}/metainfo)
install(FILES ${CMAKE_SOURCE_DIR}/Resources/icons/${identifier}.svg DESTINATION ${data}/icons/hicolor/scalable/apps)
install(FILES ${resources}/${identifier}-symbolic.svg DESTINATION ${data}/icons/hicolor/symbolic/apps)
install(FILES ${made}/quillfade.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${resources}/completions/quillfade.bash DESTINATION ${data}/bash-completion/completions RENAME quillfade)
install(FILES ${resources}/completions/_quillfade DESTINATION ${data}/zsh/site-functions)
install(FILES ${resources}/completions/quillfade.fish DESTINATION ${data}/fish/vendor_completions.d)
install(FILES ${resources}/debian/copyright ${made}/changelog.gz DESTINATION ${data}/doc/quillfade)
