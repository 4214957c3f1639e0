# The Debian package. Its dependencies are read from the program, except for plugins, which are loaded by name.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillfade)
set(CPACK_PACKAGE_CONTACT "${QUILLFADE_CONTACT}")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "hide annotations behind a live view of the screen")
set(CPACK_PACKAGE_DESCRIPTION
    "Puts a live copy of the screen, or of one area, in front of it with the\n\
overlays of annotation programs left out, at a key stroke and without\n\
freezing anything. Clicks go to what lies beneath, and the drawings are still\n\
there afterwards.\n\
.\n\
Lives in the tray of an X11 desktop, or of a Wayland desktop with Xwayland;\n\
answers hot keys and a command line.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "default-dbus-session-bus | dbus-session-bus, fonts-dejavu-core | fonts-freefont-ttf")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "gromit-mpx")
include(CPack)
