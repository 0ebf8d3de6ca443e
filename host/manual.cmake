# manual.cmake: the program writes its man pages and completions into a folder like the package's share/.
#   cmake -D program=PVWAPI -D folder=FOLDER -P manual.cmake
set(ENV{XDG_DATA_HOME} ${folder}.log)  # whoever loads the library begins its log anew; it is not to be the user's own

function(write file)
    execute_process(COMMAND ${program} ${ARGN} OUTPUT_FILE ${folder}/${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${folder})
file(MAKE_DIRECTORY ${folder}/man/man1 ${folder}/bash-completion/completions ${folder}/zsh/site-functions
    ${folder}/fish/vendor_completions.d)
write(man/man1/pvwapi.1 man)
execute_process(COMMAND ${program} man --list OUTPUT_VARIABLE topics COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" topics "${topics}")
foreach(topic ${topics})
    write(man/man1/pvwapi-${topic}.1 man ${topic})
endforeach()
write(bash-completion/completions/pvwapi completion bash)
write(zsh/site-functions/_pvwapi completion zsh)
write(fish/vendor_completions.d/pvwapi.fish completion fish)
file(TOUCH ${folder}/written)
