# Copies SRC to DST unless DST exists already.
if(NOT EXISTS "${DST}")
  configure_file("${SRC}" "${DST}" COPYONLY)
endif()
