# What Debian asks of a package's files and an installation elsewhere has no use for: compressed
# manuals, and times that do not tell when somebody packed them.

set(root "${CPACK_TEMPORARY_DIRECTORY}")
file(GLOB_RECURSE texts "${root}/*/usr/share/man/*.[1-9]" "${root}/*/usr/share/doc/*/changelog")
if(NOT texts)
  message(FATAL_ERROR "no manuals below ${root}")
endif()
execute_process(COMMAND gzip -9nf ${texts} COMMAND_ERROR_IS_FATAL ANY)
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND find "${root}" -exec touch -hd "@$ENV{SOURCE_DATE_EPOCH}" {} +
    COMMAND_ERROR_IS_FATAL ANY)
endif()
