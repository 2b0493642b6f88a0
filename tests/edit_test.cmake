# SPDX-License-Identifier: MIT
# The tool that sets and deletes what expressions find.
include("${CMAKE_CURRENT_LIST_DIR}/tool.cmake")
set(head "<?xml version='1.0'?>\r\n<!DOCTYPE s SYSTEM 'absent.dtd' [<!ENTITY e 'x'>]>\n")
set(warning "shop.xml:2:[^\n]*absent.dtd[^\n]*\n")
set(shop "${head}<s >\n\t<b k = '1' l=\"a=b\">Nut &e;</b>\n\t<b k='2'><i/> 1 <![CDATA[2]]></b>\n\t<!--c-->\n</s>")

# Makes changes in the shop: what comes out, and what is said of each.
function(expect_edit wanted_body wanted_report)
    file(WRITE "${SCRATCH_DIR}/shop.xml" "${shop}")
    expect(0 "${wanted_report}" "${warning}" shop.xml ${ARGN})
    expect_file(shop.xml "${head}${wanted_body}")
endfunction()

# Read as text, it would lose carriage returns.
function(expect_file file wanted)
    file(READ "${SCRATCH_DIR}/${file}" bytes HEX)
    string(HEX "${wanted}" wanted_bytes)
    if(NOT bytes STREQUAL wanted_bytes)
        message(FATAL_ERROR "${file} does not hold\n${wanted}")
    endif()
endfunction()

# Every other byte stays.
expect_edit("<s >\n\t<b k = 'a=\"&apos;' l=\"a=b\">&lt;</b>\n\t<b k='2'><i/>3</b>\n\t<!---->\n</s>"
            "shop.xml:4: <b> @k \"1\" -> \"a=\"'\"\nshop.xml:4: <b> \"Nut x\" -> \"<\"
shop.xml:5: <b> #text \" 1 2\" -> \"3\"\nshop.xml:6: <s> #comment \"c\" -> \"\"\n"
            "//b[@l = 'a=b' and . != '\")=']/@k=a=\"'" "(//b[. != \")='=\"])[1]=<" "//b/text()[. = \"=\" or . = ' 1 2']=3"
            "//comment()=")
# One after the other: what was changed is not found as it was.
expect_edit("<s >\n\t<b k = '2' l=\"a=b\">Nut &e;</b>\n\t<b k='3'><i/></b>\n</s>"
            "shop.xml:4: <b> @k \"1\" -> \"2\"\nshop.xml:5: <b> #text deleted\nshop.xml:6: <s> #comment deleted
shop.xml:5: <b> @k \"2\" -> \"3\"\n"
            "//@k[. = 1]=2" --delete "//b[2]/text()" --delete "//comment()" -- "//b[2]/@k=3")
expect_edit("<s >\n\t<b k = '1'>Nut &e;</b>\n\t<!--c-->\n</s>"
            "shop.xml:4: <b> @l deleted\nshop.xml:5: <b> deleted\n" --delete //@l --delete "//b[i]")
expect_edit("<s >\n\t<b k = '1' l=\"a=b\">1\t2</b>\n\t<b k='2'><i/> 1 <![CDATA[2]]></b>\n\t<!--c-->\n</s>"
            "shop.xml:4: <b> \"Nut x\" -> \"1 2\"\n" "//b[1]=1\t2")

# All or nothing. What changes nothing writes nothing.
file(WRITE "${SCRATCH_DIR}/shop.xml" "${shop}")
execute_process(COMMAND touch -d 2001-01-01 "${SCRATCH_DIR}/shop.xml")
expect(0 "" "${warning}" shop.xml //b[1]/@k=1 "//b[1]=Nut x")
expect(1 "" "${warning}shop.xml: //x: nothing is found\n" shop.xml //@k=5 //x=1)
expect(1 "" "${warning}shop.xml: //@x: nothing is found\n" --delete //b --delete //@x shop.xml)
expect(1 "" "${warning}shop.xml: //p:b: column 3: [^\n]+\n" shop.xml //p:b=1)
expect(1 "" "${warning}shop.xml:5: <b> holds more than text\n" shop.xml //@k=5 //b=1)
expect(1 "" "${warning}shop.xml:6: <s> #comment cannot have that value\n" shop.xml "//comment()=a--b")
expect(1 "" "${warning}shop.xml: #document cannot be deleted\n" shop.xml --delete /)
expect(1 "" "${warning}shop.xml: [^\n]*root[^\n]*\n" shop.xml --delete /s)
expect(1 "" "${warning}absent/a.xml: [^\n]+\n" shop.xml -o absent/a.xml //@k=5)
set(difference "--- shop.xml\n[+]+ shop.xml\n@@ [^\n]* @@\n")
set(rest "[^\n]*\n[^\n]*\n[^\n]*\n")
expect(0 "${difference} ${rest}-[^\n]*&e;[^\n]*\n-[^\n]*CDATA[^\n]*\n[+][^\n]*k = '5'[^\n]*\n[+][^\n]*k='5'.*" "${warning}"
       --dry-run shop.xml //@k=5)
expect(0 "" "${warning}" --dry-run shop.xml //b[1]/@k=1)
expect_file(shop.xml "${shop}")
file(TIMESTAMP "${SCRATCH_DIR}/shop.xml" year "%Y")
if(NOT year EQUAL 2001)
    message(FATAL_ERROR "The file was written")
endif()
expect(1 "" "bad.xml: no such file\n" bad.xml //@k=5)

# Other places and encodings.
set(input "<a b='1'/>")
expect(0 "<a b='2'/>" "" - //@b=2)
expect(0 "-:1: <a> @b \"1\" -> \"2\"\n" "" - //@b=2 --output out.xml)
expect_file(out.xml "<a b='2'/>")
expect(0 "<a b='3'/>" "" out.xml //@b=3 -o -)
expect(0 "" "" out.xml //@b=2 -o same.xml)
expect_file(same.xml "<a b='2'/>")
execute_process(COMMAND sh -c "printf '\\376\\377\\000<\\000a\\000/\\000>' >-wide.xml" WORKING_DIRECTORY "${SCRATCH_DIR}")
expect(0 "--- -wide.xml\n[+]+ -wide.xml\n@@ -1 [+]1 @@\n.*" "" --dry-run -- -wide.xml /a=1)

expect_help()
expect_full_disk_noticed("--help" "out.xml //@b=4" "- //@b=4 <out.xml" "--dry-run out.xml //@b=5")
expect(2 "" ".*a change are needed\nusage.*")
expect(2 "" ".*a change are needed\nusage.*" shop.xml)
expect(2 "" ".*--wrong.*\nusage.*" --wrong shop.xml)
expect(2 "" ".*//b.x=1.: no '='.*\nusage.*" shop.xml //b[x=1])
expect(2 "" ".*//b@: column 4: .*\nusage.*" shop.xml --delete //b@)
expect(2 "" ".*gives no nodes\nusage.*" shop.xml "count(//b)=1")
foreach(call "-o;out.xml;shop.xml" "-")
    expect(2 "" ".*--dry-run takes.*usage.*" --dry-run ${call} //b=1)
endforeach()
expect_completion("--delete --dry-run" --d)
