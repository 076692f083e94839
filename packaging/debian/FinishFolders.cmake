# SPDX-License-Identifier: BSD-3-Clause
# Run by cpack when the files of the packages are in their folders: adds the documents that Debian
# wants in every package, and adapts the rest to Debian.

# compress(FILE): always to the same bytes.
function(compress FILE)
    execute_process(COMMAND gzip -9nf ${FILE} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} name)
    set(package ${CPACK_DEBIAN_${name}_PACKAGE_NAME})
    set(root ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr)
    set(documents ${root}/share/doc/${package})

    file(MAKE_DIRECTORY ${documents})
    configure_file(${CPACK_SPANLET_PACKAGING_DIR}/debian/copyright ${documents}/copyright COPYONLY)
    execute_process(
        COMMAND ${CPACK_SPANLET_PACKAGING_DIR}/debian/changelog ${CPACK_PACKAGE_CONTACT}
        OUTPUT_FILE ${documents}/changelog COMMAND_ERROR_IS_FATAL ANY)
    compress(${documents}/changelog)
    set(overrides ${CPACK_SPANLET_PACKAGING_DIR}/debian/overrides/${package})
    if(EXISTS ${overrides})
        file(COPY ${overrides} DESTINATION ${root}/share/lintian/overrides)
    endif()

    file(GLOB pages ${root}/share/man/man1/*.1)
    foreach(page IN LISTS pages)
        compress(${page})
    endforeach()
    # Below /usr, Debian's zsh reads another folder than below /usr/local.
    if(EXISTS ${root}/share/zsh/site-functions)
        file(RENAME ${root}/share/zsh/site-functions ${root}/share/zsh/vendor-completions)
    endif()
    # cpack hands the permissions of folders on as they are, which depend on the user's mask.
    execute_process(COMMAND chmod -R u+rwX,go+rX,go-w ${CPACK_TEMPORARY_DIRECTORY}/${component}
                    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
