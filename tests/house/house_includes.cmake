# cmake -D HOUSE=<folder> -D WIDGET_HEADERS=<folder> -P house_includes.cmake
#
# Reads every C++ file below HOUSE and fails, naming file and line, when a room of src/ includes a room that it may not, when
# a room of the core includes a widget's header, when an include is not written from src/, when a file of src/ has 500 lines
# or more, when a room asks a port that is not to know of ports, when one makes an outline that it was given to read one that
# it can change, when two classes have one name (the linker takes either for the other), when the rooms ask the program's ports in more places than they need to, when there is one more global
# variable, or when a file does not begin with its two SPDX lines. WIDGET_HEADERS is the folder of Qt's widget headers; it tells which short names are widgets.
cmake_minimum_required(VERSION 3.25)

# What each room may include besides itself. Rooms that stand side by side (outline, text, search) do not know each other.
set(uses_util)
set(uses_rtf util)
set(uses_model rtf ${uses_rtf})
set(uses_formats model ${uses_model})
set(uses_document formats ${uses_formats})
set(uses_outline document ${uses_document})
set(uses_text document ${uses_document})
set(uses_find document ${uses_document})
set(uses_search find ${uses_find})
set(uses_commands outline text search ${uses_search})
set(uses_pages document ${uses_document})
set(uses_platform document ${uses_document})
set(uses_print pages platform ${uses_platform})
set(uses_window commands platform ${uses_commands})
set(uses_panes window ${uses_window})
set(uses_app panes print ${uses_panes})
set(rooms util rtf model formats document find outline text search commands pages platform print window panes app)

# Rooms that build without Qt Widgets, and the dialog of the search room, which is the one exception.
set(core util rtf model formats document find outline text search commands pages)
set(widget_exceptions src/search/frmSearch.h src/search/frmSearch.cpp)

# What is kept of documents beside their files; built where there is Qt Sql.
set(uses_vault document ${uses_document})
list(APPEND uses_panes vault)
list(APPEND uses_app vault)
list(APPEND rooms vault)
list(APPEND core vault)

if(NOT EXISTS "${WIDGET_HEADERS}/QWidget")
  message(FATAL_ERROR "no widget headers in ${WIDGET_HEADERS}")
endif()
set(complaint_count 0)

function(complain where what)
  message(NOTICE "${where}: ${what}")
  math(EXPR complaint_count "${complaint_count} + 1")
  set(complaint_count ${complaint_count} PARENT_SCOPE)
endfunction()

function(is_widget_header name result)
  if(name MATCHES "^(QtWidgets|QtPrintSupport)(/|$)" OR name MATCHES "^Q(Printer|PrintDialog|PrintPreview|PageSetupDialog)"
      OR EXISTS "${WIDGET_HEADERS}/${name}")
    set(${result} TRUE PARENT_SCOPE)
  else()
    set(${result} FALSE PARENT_SCOPE)
  endif()
endfunction()

# check_include(FILE ROOM LINE NAME): one include of a file of a room.
macro(check_include file room line name)
  if("${name}" MATCHES "^([a-z]+)/")
    set(included ${CMAKE_MATCH_1})
    if(included IN_LIST rooms AND NOT included STREQUAL "${room}" AND NOT included IN_LIST uses_${room})
      complain("${file}:${line}" "${room} may not include ${included}")
    endif()
  endif()
  if("${room}" IN_LIST core AND NOT "${file}" IN_LIST widget_exceptions)
    is_widget_header("${name}" widget)
    if(widget)
      complain("${file}:${line}" "${room} may not include the widget header ${name}")
    endif()
  endif()
endmacro()

# Below document nobody asks a port; beside the panes, what widgets and pages need is given to them, and they announce.
set(portless util rtf model formats pages platform panes)
# In so many lines the other rooms ask one. What more of them need is given to them, or asked by a function for all.
if(NOT DEFINED MOST_ASKING)
  set(MOST_ASKING 56)
endif()
set(asking 0)

# The variables that any function of their file, or of the program, may write: what the options and a search are, what a
# command tells the next one, and what signals and errors reach from anywhere.
set(globals g_options g_fntDefaultOutlineFont g_fntDefaultTextFont g_fntPendingTextFont g_bHelpIsOutline
  g_sSearchFind g_sSearchReplace g_sSearchWhere g_sSearchScope g_bSearchMatchCase g_bSearchWholeWord g_bSearchBackwards
  g_iSearchMode g_hisFind g_hisReplace bBusy iActionDepth iDocumentCount s_leftMatch s_hourglasses
  g_sProcedure s_reporter s_remarkWriter living handlersPipe interrupted)

# check_global(FILE LINE CONTENT): a line that defines a variable outside of functions and classes.
function(check_global file line content)
  set(type "([A-Za-z_][A-Za-z0-9_:]*(<[^()]*>)?)")
  if(content MATCHES "^((inline|static|volatile|thread_local) )*${type} [*&]?([A-Za-z_][A-Za-z0-9_]*)( = .*|{.*})? $")
    set(name ${CMAKE_MATCH_5})
    if(NOT CMAKE_MATCH_3 MATCHES "^(class|struct|enum|union|using|namespace|return)$" AND NOT name IN_LIST globals)
      complain("${file}:${line}" "${name} is one global variable more")
      set(complaint_count ${complaint_count} PARENT_SCOPE)
    endif()
  endif()
endfunction()

macro(check_file file)
  # Characters that mean something to a list would upset the splitting into lines.
  file(READ "${HOUSE}/${file}" text)
  string(REGEX REPLACE "[][;\\]" " " text "${text}")
  if(NOT text MATCHES "^// SPDX-FileCopyrightText: [^\n]+\n// SPDX-License-Identifier: MIT\n")
    complain("${file}:1" "the two SPDX lines are missing")
  endif()
  if("${file}" MATCHES "^src/([a-z]+)/")
    set(room ${CMAKE_MATCH_1})
    string(REGEX MATCHALL "\n" ends "${text}")
    list(LENGTH ends length)
    if(length GREATER_EQUAL 500)
      complain("${file}:1" "${length} lines are too many for one file")
    endif()
    if(NOT room IN_LIST rooms)
      complain("${file}:1" "no rule says what the room ${room} may include")
    endif()
    string(REPLACE "\n" ";" lines "${text}")
    set(line 0)
    foreach(content IN LISTS lines)
      math(EXPR line "${line} + 1")
      if(content MATCHES "(^|[^A-Za-z0-9_])ports\\(\\)")
        math(EXPR asking "${asking} + 1")
        if(room IN_LIST portless)
          complain("${file}:${line}" "${room} may not ask the program's ports")
        elseif(asking GREATER MOST_ASKING)
          complain("${file}:${line}" "the program's ports are asked in more than ${MOST_ASKING} lines")
        endif()
      endif()
      check_global("${file}" "${line}" "${content}")
      if("${file}" MATCHES "[.]h$" AND content MATCHES "^class ([A-Za-z0-9_]+)( final)?( :.*)?$")
        set(name ${CMAKE_MATCH_1})
        if(name IN_LIST classes)
          complain("${file}:${line}" "there is another class ${name}")
        endif()
        list(APPEND classes ${name})
      endif()
      if(content MATCHES "_cast<(Outline|EntryTree|Document|History|QAbstractItemModel)[^A-Za-z0-9_]")
        complain("${file}:${line}" "an outline is changed by its history alone")
      endif()
      if(content MATCHES "^[ \t]*#[ \t]*include[ \t]*([<\"])([^>\"]+)[>\"]")
        set(quote "${CMAKE_MATCH_1}")
        set(name "${CMAKE_MATCH_2}")
        if(quote STREQUAL "\"" AND NOT name MATCHES "/" AND NOT name MATCHES "(^moc_.*|[.]moc)$")
          complain("${file}:${line}" "write the include from src/: ${name}")
        endif()
        check_include("${file}" "${room}" "${line}" "${name}")
      endif()
    endforeach()
  endif()
endmacro()

foreach(folder src tests bench fuzz resources)
  file(GLOB_RECURSE found RELATIVE "${HOUSE}" "${HOUSE}/${folder}/*.h" "${HOUSE}/${folder}/*.cpp")
  list(APPEND files ${found})
endforeach()
list(FILTER files EXCLUDE REGEX "^tests/house/broken/")
list(LENGTH files file_count)
if(file_count EQUAL 0)
  message(FATAL_ERROR "no C++ file below ${HOUSE}")
endif()
foreach(file IN LISTS files)
  check_file("${file}")
endforeach()

get_filename_component(house_name "${HOUSE}" NAME)
message(NOTICE "${house_name}: ${complaint_count} complaints in ${file_count} files")
if(complaint_count GREATER 0)
  message(FATAL_ERROR "The house rules are broken.")
endif()
