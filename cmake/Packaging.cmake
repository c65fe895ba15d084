# `cpack` in the build directory makes a Debian package of everything that is installed.

set(CPACK_PACKAGE_NAME lintara)
set(CPACK_PACKAGE_VENDOR "The Lintara developers")
set(CPACK_PACKAGE_CONTACT "The Lintara developers <lintara-devel@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
    "Lintara works out the sequence of the gaps between the contigs of a scaffold
from the short reads assigned to each gap, or finds that the contigs overlap.
Tandem repeats are recognised and rebuilt from their unit; what cannot be
decided stays N, and a log names the case that was taken for each gap.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_RESOURCE_FILE_README ${PROJECT_SOURCE_DIR}/README.md)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CPACK_PACKAGE_CONTACT}")
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# lintara-kit runs a mapper; without one it still takes mapped reads, and lintara itself needs none.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "bwa")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "minimap2")
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/DebianFiles.cmake)

include(CPack)
