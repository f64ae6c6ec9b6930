# What a build or an installation does to settings that a user has made:
#   cmake -DSCRIPT=UpdateSettings.cmake -DFOLDER=a folder to work in -P this
cmake_minimum_required(VERSION 3.25)

function(write name text)
  string(REPLACE "\n" "\r\n" text "${text}")
  file(WRITE "${FOLDER}/${name}" "${text}")
endfunction()

function(update)
  execute_process(COMMAND_ERROR_IS_FATAL ANY COMMAND ${CMAKE_COMMAND} -DFRESH=${FOLDER}/fresh.ini
    -DDELIVERED=${FOLDER}/data/delivered.ini -DTARGET=${FOLDER}/own.ini -P ${SCRIPT})
endfunction()

function(expect what text)
  write(expected.ini "${text}")
  file(READ "${FOLDER}/expected.ini" expected HEX)
  file(READ "${FOLDER}/own.ini" own HEX)
  if(NOT own STREQUAL expected)
    message(SEND_ERROR "${what}: own.ini is not as expected.ini in ${FOLDER}")
  endif()
endfunction()

file(REMOVE_RECURSE "${FOLDER}")
string(ASCII 235 e_diaeresis) # of Windows-1252: the files are not UTF-8

write(fresh.ini "; comment; with [brackets]
[Mappen]
Exportmap=.
Pad=.\\data;x

[Fouten]
fout.0001=Kopi${e_diaeresis}ren mislukt|%1
")
update()
file(READ "${FOLDER}/fresh.ini" fresh HEX)
file(READ "${FOLDER}/own.ini" own HEX)
if(NOT own STREQUAL fresh)
  message(SEND_ERROR "the first time the file is not the delivered one")
endif()

# The user changes a value and adds a key and a section; the next version
# improves a text, adds a key and drops one that the user has not touched.
write(own.ini "; comment; with [brackets]
[Mappen]
Exportmap=D:\\kaarten
Pad=.\\data;x
Eigen=1

[Fouten]
fout.0001=Kopi${e_diaeresis}ren mislukt|%1

[Settings]
frmMainLeft=150
")
write(fresh.ini "[Mappen]
Exportmap=.\\uitvoer
Nieuw=ja

[Fouten]
fout.0001=Het kopi${e_diaeresis}ren is mislukt.|%1
")
set(merged "[Mappen]
Exportmap=D:\\kaarten
Nieuw=ja
Eigen=1

[Fouten]
fout.0001=Het kopi${e_diaeresis}ren is mislukt.|%1

[Settings]
frmMainLeft=150
")
update()
expect("the user's values stay, the others follow" "${merged}")
update()
expect("a second time changes nothing" "${merged}")

# From a version that kept no delivered file: who can tell? The user's values stay.
file(REMOVE "${FOLDER}/data/delivered.ini")
write(own.ini "[MAPPEN]
exportmap=E:\\x
")
update()
expect("without the delivered file, and in other letters" "[Mappen]
Exportmap=E:\\x
Nieuw=ja

[Fouten]
fout.0001=Het kopi${e_diaeresis}ren is mislukt.|%1
")
