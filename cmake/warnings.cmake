# SPDX-License-Identifier: Apache-2.0
# The warnings that all of our own code is built with. Call ovk_warnings(target) for each target.
function(ovk_warnings target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wundef -Wformat=2 -Wno-format-nonliteral
        # Records are zeroed and then named field by field.
        -Wno-missing-field-initializers
        $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>)
    if(OVK_SANITIZED)
        # What sanitizers add hides from the compiler that a value is set: it warns of std::regex itself.
        target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
    endif()
    if(OVK_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()
