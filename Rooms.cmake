# One target for each folder of sources, linked only to what its files may include. SourceTreeTest holds the includes to
# the same arrows.

# The least program that links all of a room.
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/nothing.cpp CONTENT "int main() {}\n")

# room(PREFIX FOLDER [TARGET…]) makes the target prefix-folder of a folder that lies here. With the tests comes a program
# that holds the whole room and nothing but these targets: what a room uses of any other does not link.
function(room prefix folder)
  string(TOLOWER ${prefix}-${folder} target)
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  add_library(${target} STATIC ${sources})
  target_link_libraries(${target} PUBLIC ${ARGN} PRIVATE counted)
  if(QUILLFADE_TESTS)
    add_executable(links-${target} ${CMAKE_BINARY_DIR}/nothing.cpp)
    target_link_libraries(links-${target} PRIVATE $<LINK_LIBRARY:WHOLE_ARCHIVE,${target}>)
    if(prefix STREQUAL quillfade)
      # What the ports leave to the adapter to define.
      target_link_libraries(links-${target} PRIVATE platform-simulated)
    endif()
  endif()
endfunction()
