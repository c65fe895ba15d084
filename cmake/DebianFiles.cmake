# What Debian asks of a package and CPack leaves out: the copyright file, a changelog in Debian's form, compressed man
# pages. CPack runs this on the staged files before it packs them.
set(stage "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
file(GLOB roots LIST_DIRECTORIES true "${stage}/usr" "${stage}/*/usr")
foreach(root IN LISTS roots)
  set(doc "${root}/share/doc/lintara")
  if(NOT EXISTS "${doc}/LICENSE")
    continue()
  endif()
  file(READ "${doc}/LICENSE" license)
  string(REGEX REPLACE "^MIT License\n+" "" license "${license}")
  string(REGEX MATCH "Copyright[^\n]*" owner "${license}")
  string(REGEX REPLACE "^Copyright (\\(c\\) )?" "" owner "${owner}")
  string(REGEX REPLACE "^Copyright[^\n]*\n+" "" license "${license}")
  string(REGEX REPLACE "\n+$" "" license "${license}")
  string(REPLACE "\n\n" "\n.\n" license "${license}")
  string(REPLACE "\n" "\n " license "${license}")
  file(WRITE "${doc}/copyright"
       "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\n"
       "Upstream-Name: lintara\n\nFiles: *\nCopyright: ${owner}\nLicense: Expat\n ${license}\n")
  file(REMOVE "${doc}/LICENSE")
  # Debian wants the date in English; SOURCE_DATE_EPOCH, if set, makes it and so the package reproducible.
  set(ENV{LC_ALL} C)
  string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
  file(WRITE "${doc}/changelog"
       "lintara (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium\n\n  * See CHANGELOG.md in this folder.\n\n"
       " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
  file(GLOB pages "${root}/share/man/man1/*.1")
  execute_process(COMMAND gzip -9nf "${doc}/changelog" ${pages} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
