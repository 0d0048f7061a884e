# The day on which this version was released, as CHANGELOG.md says: TARNWICK_RELEASED. A version without an
# entry there does not configure.
file(STRINGS CHANGELOG.md TARNWICK_RELEASED REGEX "^## \\[${PROJECT_VERSION}\\] - ")
string(REGEX MATCH "[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]" TARNWICK_RELEASED "${TARNWICK_RELEASED}")
if(NOT TARNWICK_RELEASED)
  message(FATAL_ERROR "CHANGELOG.md does not say when ${PROJECT_VERSION} was released.")
endif()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)
