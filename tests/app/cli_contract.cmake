# The command-line front end, end to end. Run with -DCLI=<vellumdock-cli> -DWORK=<scratch dir>.
if(NOT CLI OR NOT WORK)
    message(FATAL_ERROR "Needs -DCLI=<path to vellumdock-cli> and -DWORK=<scratch folder>")
endif()

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
set(HOME_DIR "${WORK}/home")

# cli(<result prefix> args...): runs the CLI with --home; sets <prefix>_RC, _OUT, _ERR.
function(cli prefix)
    execute_process(COMMAND "${CLI}" --home "${HOME_DIR}" ${ARGN}
        WORKING_DIRECTORY "${WORK}"
        RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 60)
    set(${prefix}_RC "${rc}" PARENT_SCOPE)
    set(${prefix}_OUT "${out}" PARENT_SCOPE)
    set(${prefix}_ERR "${err}" PARENT_SCOPE)
endfunction()

function(expect_rc prefix expected what)
    if(NOT "${${prefix}_RC}" STREQUAL "${expected}")
        message(FATAL_ERROR "${what}: exit code ${${prefix}_RC}, expected ${expected}\n"
            "stdout:\n${${prefix}_OUT}\nstderr:\n${${prefix}_ERR}")
    endif()
endfunction()

function(expect_equal actual expected what)
    if(NOT "${actual}" STREQUAL "${expected}")
        message(FATAL_ERROR "${what}:\n  got      [${actual}]\n  expected [${expected}]")
    endif()
endfunction()

# expect_line(<text> <regex> <what>): some line of the text matches the regex (anchored).
function(expect_line text regex what)
    string(REPLACE "\r" "" text "${text}")
    string(REPLACE ";" "\\;" text "${text}")
    string(REPLACE "\n" ";" lines "${text}")
    foreach(line IN LISTS lines)
        if(line MATCHES "^${regex}$")
            return()
        endif()
    endforeach()
    message(FATAL_ERROR "${what}: no line matches [${regex}] in:\n${text}")
endfunction()

set(TAB "\t")

# new: the extension rule, the printed path, the home folder with its Temp.
cli(r new "${WORK}/games")
expect_rc(r 0 "new")
expect_equal("${r_OUT}" "${WORK}/games.vdb\n" "new prints the path with .vdb")
if(NOT EXISTS "${WORK}/games.vdb")
    message(FATAL_ERROR "new did not write ${WORK}/games.vdb")
endif()
if(NOT IS_DIRECTORY "${HOME_DIR}/Temp")
    message(FATAL_ERROR "--home did not get its Temp folder")
endif()

cli(r new "${WORK}/Other.VDB")
expect_rc(r 0 "new with the extension in capitals")
expect_equal("${r_OUT}" "${WORK}/Other.VDB\n" "a name ending in .VDB keeps it")

cli(r new "${WORK}/games.vdb")
expect_rc(r 1 "new on an existing file")
expect_equal("${r_ERR}" "Der Datenbankname ist schon vorhanden!\n" "new on an existing file")
expect_equal("${r_OUT}" "" "new on an existing file prints no path")

# sql: a query prints a header and tab-separated rows.
cli(r sql "${WORK}/games.vdb" "Select tItem,mConfig From Config")
expect_rc(r 0 "sql select")
string(REGEX MATCH "^[^\n]*" header "${r_OUT}")
expect_equal("${header}" "tItem${TAB}mConfig" "sql select header")
expect_line("${r_OUT}" "Version${TAB}3\\.4" "sql select row")

cli(r sql "${WORK}/games.vdb" "SELECT tItem, Null As Nothing, tsCreated FROM Config WHERE tItem='Version'")
expect_rc(r 0 "sql select with Null and a date")
expect_line("${r_OUT}" "tItem${TAB}Nothing${TAB}tsCreated" "Null and date header")
expect_line("${r_OUT}"
    "Version${TAB}${TAB}[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9] [0-9][0-9]:[0-9][0-9]:[0-9][0-9]"
    "Null as empty text, dates as YYYY-MM-DD HH:MM:SS")

# Action statements print the number of rows they touched.
cli(r sql "${WORK}/games.vdb" "Insert Into Config (tItem, mConfig) Values ('Note', 'a''b')")
expect_rc(r 0 "sql insert")
expect_equal("${r_OUT}" "1\n" "insert count")
cli(r sql "${WORK}/games.vdb" "Update Config Set mConfig='x' Where tItem Like 'N*'")
expect_rc(r 0 "sql update")
expect_equal("${r_OUT}" "1\n" "update count")
cli(r sql "${WORK}/games.vdb" "Update Config Set mConfig='y' Where tItem='Nowhere'")
expect_rc(r 0 "sql update of no row")
expect_equal("${r_OUT}" "0\n" "update count of no row")
cli(r sql "${WORK}/games.vdb" "Select mConfig From Config Where tItem='Note'")
expect_equal("${r_OUT}" "mConfig\nx\n" "the update reached the catalogue")
cli(r sql "${WORK}/games.vdb" "Delete * From Config Where tItem='Note'")
expect_equal("${r_OUT}" "1\n" "delete count")

# Failures: exit 1 and a message on stderr.
cli(r sql "${WORK}/games.vdb" "Selec tItem Frum Config")
expect_rc(r 1 "a bad statement")
if(r_ERR STREQUAL "")
    message(FATAL_ERROR "a bad statement gave no message")
endif()
cli(r sql "${WORK}/missing.vdb" "Select * From Config")
expect_rc(r 1 "sql on a missing catalogue")
if(EXISTS "${WORK}/missing.vdb")
    message(FATAL_ERROR "sql on a missing catalogue created it")
endif()

# Usage errors: exit 2 with the usage text on stderr; --help on stdout.
foreach(args "" "frobnicate" "new" "new;a;b" "sql;${WORK}/games.vdb" "--home")
    execute_process(COMMAND "${CLI}" ${args} WORKING_DIRECTORY "${WORK}"
        RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 60)
    if(NOT rc EQUAL 2 OR NOT err MATCHES "Usage: vellumdock-cli")
        message(FATAL_ERROR "usage error [${args}]: exit ${rc}, stderr:\n${err}")
    endif()
endforeach()
cli(r --help)
expect_rc(r 0 "--help")
if(NOT r_OUT MATCHES "^Usage: vellumdock-cli" OR NOT r_OUT MATCHES "sql CATALOGUE STATEMENT")
    message(FATAL_ERROR "--help text:\n${r_OUT}")
endif()
