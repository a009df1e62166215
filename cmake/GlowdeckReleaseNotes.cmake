# The release notes live in one place, the AppStream metadata's <releases>; the manual pages take the
# release's date from there and the Debian changelog its date and notes.

# glowdeck_read_release(<metainfo file> <version> <date variable> <changelog variable>)
#
# Sets <date variable> to the release's date (YYYY-MM-DD) and <changelog variable> to its notes as the items
# of a Debian changelog entry: every <p> and <li> an item ("  * "), wrapped to fit 80 columns. Stops the
# configuration when the metadata's newest release is not <version>: a new version needs its notes first.
function(glowdeck_read_release metainfo version date_var changelog_var)
    file(READ ${metainfo} text)
    string(REGEX MATCH "<release version=\"([^\"]*)\" date=\"([0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9])\""
        newest "${text}")
    if(NOT CMAKE_MATCH_1 STREQUAL version)
        message(FATAL_ERROR "The newest release in ${metainfo} is \"${CMAKE_MATCH_1}\", but the project's "
            "version is ${version}: add a <release version=\"${version}\" date=\"YYYY-MM-DD\"> with its "
            "notes at the top of <releases>.")
    endif()
    set(${date_var} ${CMAKE_MATCH_2} PARENT_SCOPE)

    string(FIND "${text}" "${newest}" start)
    string(SUBSTRING "${text}" ${start} -1 release)
    string(FIND "${release}" "</release>" end)
    string(SUBSTRING "${release}" 0 ${end} release)
    # A semicolon would split CMake's lists: it travels as a control character that text never holds.
    string(ASCII 31 semicolon)
    string(REPLACE ";" "${semicolon}" release "${release}")
    # Plain text only: the notes hold no markup inside a paragraph or an item.
    string(REGEX MATCHALL "<(p|li)>[^<]*</" elements "${release}")
    set(items "")
    foreach(element IN LISTS elements)
        string(REGEX REPLACE "^<(p|li)>(.*)</$" "\\2" note "${element}")
        string(STRIP "${note}" note)
        string(REGEX REPLACE "[ \t\r\n]+" ";" words "${note}")
        set(line "  *")
        foreach(word IN LISTS words)
            string(LENGTH "${line} ${word}" length)
            if(length GREATER 78 AND NOT line STREQUAL "  *" AND NOT line STREQUAL "   ")
                string(APPEND items "${line}\n")
                set(line "   ")
            endif()
            string(APPEND line " ${word}")
        endforeach()
        string(APPEND items "${line}\n")
    endforeach()
    string(REPLACE "${semicolon}" ";" items "${items}")
    string(REPLACE "&lt;" "<" items "${items}")
    string(REPLACE "&gt;" ">" items "${items}")
    string(REPLACE "&quot;" "\"" items "${items}")
    string(REPLACE "&apos;" "'" items "${items}")
    string(REPLACE "&amp;" "&" items "${items}")
    set(${changelog_var} "${items}" PARENT_SCOPE)
endfunction()

# glowdeck_rfc2822_date(<YYYY-MM-DD> <variable>): "Mon, 23 Nov 2026 12:00:00 +0000", the form the Debian
# changelog requires. Noon, so that no time zone moves the day.
function(glowdeck_rfc2822_date iso_date var)
    string(REGEX MATCH "^([0-9]+)-([0-9]+)-([0-9]+)$" _ "${iso_date}")
    math(EXPR year "${CMAKE_MATCH_1}")
    math(EXPR month "${CMAKE_MATCH_2}")
    math(EXPR day "${CMAKE_MATCH_3}")
    # The day of the week by Sakamoto's method; 0 is Sunday.
    set(offsets 0 3 2 5 0 3 5 1 4 6 2 4)
    math(EXPR index "${month} - 1")
    list(GET offsets ${index} offset)
    set(y ${year})
    if(month LESS 3)
        math(EXPR y "${y} - 1")
    endif()
    math(EXPR weekday "(${y} + ${y} / 4 - ${y} / 100 + ${y} / 400 + ${offset} + ${day}) % 7")
    set(weekdays Sun Mon Tue Wed Thu Fri Sat)
    set(months Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec)
    list(GET weekdays ${weekday} weekday_name)
    list(GET months ${index} month_name)
    if(day LESS 10)
        set(day "0${day}")
    endif()
    set(${var} "${weekday_name}, ${day} ${month_name} ${year} 12:00:00 +0000" PARENT_SCOPE)
endfunction()
