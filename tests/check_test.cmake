# SPDX-License-Identifier: MIT
# The tool that says what is wrong with a file.
#     TOOL, COMPLETION, MANUAL, SCRATCH_DIR
include("${CMAKE_CURRENT_LIST_DIR}/tool.cmake")
file(WRITE "${SCRATCH_DIR}/good.xml" "<a><b>t</b></a>")
file(WRITE "${SCRATCH_DIR}/warned.xml"
    "<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a c CDATA ''><!ATTLIST a c CDATA ''>]><a/>")
file(WRITE "${SCRATCH_DIR}/bad.xml" "<!DOCTYPE a [<!ELEMENT a ANY>]>\n<a d=''>\n<c/></a>")

# What is wrong goes to the standard error stream in every mode.
expect(0 "" "" good.xml)
expect(0 "0 a\n  1 b  \"t\"\n\nElements by tag name.*\n" "" --outline good.xml)
expect(1 "0 a\n.*" "bad.xml:2:.*" --outline bad.xml good.xml)
expect(0 "" "warned.xml:1:[0-9]+: [^\n]+ \\(warning\\)\n" warned.xml)
expect(1 "" "bad.xml:2:[0-9]+: [^\n]+ 'd'[^\n]+\nbad.xml:3:[0-9]+: [^\n]+ 'c'\n.*absent.xml: [^\n]+\n"
       bad.xml good.xml absent.xml)
expect(1 "" "\\.: is a folder\n" .)

# How documents are read.
file(WRITE "${SCRATCH_DIR}/part.dtd" "<!ELEMENT a (b)><!ELEMENT b (#PCDATA)><!ATTLIST a c CDATA 'd'>")
file(WRITE "${SCRATCH_DIR}/part.ent" "from outside")
file(WRITE "${SCRATCH_DIR}/typed.xml"
     "<!DOCTYPE a SYSTEM 'part.dtd' [<!ENTITY e SYSTEM 'part.ent'>]>\n<a>\n <b>&e;</b>\n</a>")
file(WRITE "${SCRATCH_DIR}/lost.xml" "<!DOCTYPE a SYSTEM 'absent.dtd'>\n<a/>")
set(flat "<[?]xml[^\n]*\n<!DOCTYPE[^\n]*\n<a")
expect(0 "" "" --no-validate bad.xml)
expect(1 "" "lost.xml:1:.*" lost.xml)
expect(0 "" "lost.xml:1:[^\n]*absent.dtd[^\n]* \\(warning\\)\n" --no-validate lost.xml)
expect(1 "" "good.xml:1:.*" --always-validate good.xml)
expect(0 "" "" --always-validate typed.xml)
expect(1 "" "typed.xml:1:[^\n]*\n" --refuse-doctype typed.xml good.xml)
expect(0 "${flat}>\n <b>from outside</b>\n</a>\n" "" --format --indent 0 typed.xml)
expect(0 "${flat}>\n <b/>\n</a>\n" ".*part.dtd[^\n]* \\(warning\\)\n.*part.ent.*"
       --no-validate --no-external --format --indent 0 typed.xml)

# Selecting. Texts beside one another are one; a file that is refused outweighs what others hold.
file(WRITE "${SCRATCH_DIR}/shop.xml"
     "<s xmlns:p='urn:p'>\n <b k='1'>a &lt; <![CDATA[b]]></b>\n <p:b>\n</p:b><!--c-->\n</s>")
expect(0 "<b k=\"1\">a &lt; <!.CDATA.b..></b>\na &lt; <!.CDATA.b..>\n<!--c-->\n1\n" ""
       --select "//b | //b/text() | //comment() | //@k" shop.xml)
expect(0 "shop.xml:2:a < b\nshop.xml:3:\nshop.xml:2:1\n" "" -n --text --select "//b | //p:b | //@k" shop.xml)
expect(0 "1\n0\n" "" --count --select //b/@k shop.xml good.xml)
expect(0 "good.xml:0\nshop.xml:1\ngood.xml:0\n" "" --line-number --count --select //b/@k
       good.xml shop.xml good.xml)
expect(0 "<[?]xml [^\n]*\n<a><b>t</b></a>\n" "" --select / good.xml)
expect(0 "t\n" "" --text --select / good.xml)
expect(0 "<a c=\"d\">\n <b>from outside</b>\n</a>\n" "" --select /a typed.xml) # white space is there
expect(0 "shop.xml:1.5\n" "" -n --select "count(//b) + .5" shop.xml)
expect(1 "" "" --select //x shop.xml)
expect(1 "\n" "" --select "string(//x)" shop.xml)
expect(1 "false\n" "" --select "count(//b) > 1" shop.xml)
expect(2 "" "shop.xml: column 3: [^\n]+\n" --select //q:b shop.xml)
expect(2 "" "shop.xml: column 9: [^\n]+\n" --select "count(//q:b)" shop.xml)
expect(2 "<b>t</b>\n" "bad.xml:2:.*absent.xml: [^\n]+\n" --select //b bad.xml absent.xml good.xml)

# Formatting: messages to the standard error stream, documents to the standard output or in place.
expect(0 "<[?]xml version=\"1.0\" encoding=\"UTF-8\"[?]>\n<a>\n  <b>t</b>\n</a>\n" "" --format good.xml)
expect(1 "<[?]xml[^\n]*\n<a><b>t</b></a>\n" "bad.xml:2:.*" bad.xml --format --indent=0 -- good.xml)
file(WRITE "${SCRATCH_DIR}/-wide.xml" "<a><b><c/></b></a>")
file(COPY_FILE "${SCRATCH_DIR}/bad.xml" "${SCRATCH_DIR}/kept.xml")
expect(1 "" "kept.xml:2:.*" --format --indent 1 --in-place -- -wide.xml kept.xml)
file(READ "${SCRATCH_DIR}/-wide.xml" wide)
file(READ "${SCRATCH_DIR}/bad.xml" bad)
file(READ "${SCRATCH_DIR}/kept.xml" kept)
if(NOT wide MATCHES "[?]>\n<a>\n <b>\n  <c/>\n </b>\n</a>\n$" OR NOT kept STREQUAL bad)
    message(FATAL_ERROR "--in-place: ${wide}${kept}")
endif()

# Encodings and files of their own.
file(WRITE "${SCRATCH_DIR}/wide.xml" "<a>é</a>")
file(REMOVE "${SCRATCH_DIR}/out.xml")
expect(0 "<[?]xml version=\"1.0\" encoding=\"US-ASCII\"[?]>\n<a>&#xE9;</a>\n" ""
       --format --encoding US-ASCII -o - wide.xml)
expect(1 "" "wide.xml: [^\n]*no-such[^\n]*\n" --format --encoding no-such wide.xml)
expect(0 "" "" --format -o out.xml good.xml)
expect(1 "" "bad.xml:2:.*" --format --output=out.xml bad.xml)
expect(1 "" "absent/out.xml: [^\n]+\n" --format -oabsent/out.xml good.xml)
file(READ "${SCRATCH_DIR}/out.xml" out)
if(NOT out MATCHES "\n<a>\n  <b>t</b>\n</a>\n$")
    message(FATAL_ERROR "--output: ${out}")
endif()

# The standard input and the standard output.
set(input "<a>\n</b>")
expect(1 "" "-:2:[0-9]+: [^\n]+\n" -)
set(input "<a><!--c--></a>")
expect(0 "<[?]xml[^\n]*\n<a>\n  <!--c-->\n</a>\n" "" --format -)
expect_help()
expect_full_disk_noticed("--help" "--outline good.xml" "--format good.xml" "--select / good.xml")

# Wrong calls.
expect(2 "" "usage: qrndom-check .*")
expect(2 "" ".*--wrong.*usage: qrndom-check .*" --wrong good.xml)
expect(2 "" ".*from 0 to 80\nusage.*" --format --indent 81 good.xml)
expect(2 "" ".*from 0 to 80\nusage.*" --format --indent 2x good.xml)
foreach(call "--indent;2;good.xml" "--in-place;good.xml" "--format;--outline;good.xml"
             "--encoding;UTF-8;good.xml" "-o;out.xml;good.xml")
    expect(2 "" ".*go with --format.*" ${call})
endforeach()
foreach(call "good.xml;bad.xml" "--in-place;good.xml")
    expect(2 "" ".*takes one FILE.*" --format -o out.xml ${call})
endforeach()
expect(2 "" ".*--select: column 4: .*usage.*" --select "//b@" good.xml)
foreach(call "--text" "--count" "-n" "--select;/;--format" "--select;/;--outline")
    expect(2 "" ".*go with --select.*" ${call} good.xml)
endforeach()
foreach(call "--text;--select;/" "--select;1")
    expect(2 "" ".*--count takes.*" --count ${call} good.xml)
endforeach()
expect(2 "" ".*has no place\n.*" --format --in-place -)

expect_completion("--in-place --indent" --format --in)
expect_completion("--no-validate" --no-v)
expect_completion("UTF-8 UTF-16" --encoding UTF)
expect_completion("8" --indent = 8)
expect_completion("" go)
