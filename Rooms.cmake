# One target for each folder of sources, linked only to what its files may include. SourceTreeTest checks the includes
# against the same arrows.

# The smallest program that can link a whole room.
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/nothing.cpp CONTENT "int main() {}\n")

# room(PREFIX FOLDER [TARGET…]) makes the target prefix-folder from a folder in the caller's directory. With the tests it
# also makes a program of the whole room and these targets alone, which does not link if the room uses any other.
function(room prefix folder)
  string(TOLOWER ${prefix}-${folder} target)
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.mm)
  add_library(${target} STATIC ${sources})
  target_link_libraries(${target} PUBLIC ${ARGN} PRIVATE counted)
  if(QUILLFADE_TESTS)
    add_executable(links-${target} ${CMAKE_BINARY_DIR}/nothing.cpp)
    target_link_libraries(links-${target} PRIVATE $<LINK_LIBRARY:WHOLE_ARCHIVE,${target}>)
    if(prefix STREQUAL quillfade)
      # Defines what the ports leave to the adapter.
      target_link_libraries(links-${target} PRIVATE platform-simulated)
    endif()
  endif()
endfunction()
