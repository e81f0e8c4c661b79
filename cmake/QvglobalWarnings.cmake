# qvglobal_enable_warnings(<target>): the warning set every target of this
# project is built with. Third-party targets keep their own flags.
function(qvglobal_enable_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
endfunction()
