// SPDX-License-Identifier: MIT
#include "support.h"

namespace {

/// What a program prints, and what it ends with unless that is 0.
std::string run(const ScratchFolder& folder, const std::string& program,
                const std::string& input = {}) {
    const std::string command = "cd '" + folder.path + "' && '" QRNDOM_EXAMPLES "'/" + program +
                                " < '" + folder.write("in", input) + "' > out 2> errors";
    const int status = std::system(command.c_str());
    const std::string end =
        status != 0 ? "ended with " + std::to_string(WEXITSTATUS(status)) + "\n" : "";
    return bytesOf(folder.file("out")) + bytesOf(folder.file("errors")) + end;
}

const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

TEST(Examples, EditAConfigurationFile) {
    const ScratchFolder folder;
    const std::string source =
        "<?xml version='1.0'?>\r\n<!DOCTYPE c SYSTEM 'urn:none:c.dtd'>\r\n"
        "<c  z='1'\ta='2' >\r\n\t<!-- ours -->\r\n\t<in><port>80</port ></in>"
        "\r\n\t<user>www</user>\r\n</c>";
    folder.write("c.xml", source);
    EXPECT_EQ(run(folder, "edit_config c.xml"), "");
    EXPECT_EQ(bytesOf(folder.file("c.xml")), source);
    EXPECT_EQ(run(folder, "edit_config c.xml in/port 8080 @a \"'\" user '' log 'a&b' user@x 1"),
              "line 5, <port>\nline 3, <c>\nline 6, <user>\nuser@x: no such place in c.xml\n"
              "ended with 1\n");
    EXPECT_EQ(bytesOf(folder.file("c.xml")), source);
    run(folder, "edit_config c.xml in/port 8080 @a \"'\" user '' log 'a&b' in@new x");
    std::string edited = source;
    const auto change = [&edited](const std::string& old, const std::string& now) {
        edited.replace(edited.find(old), old.size(), now);
    };
    change("80", "8080");
    change("a='2'", "a='&apos;'");
    change("<user>www</user>", "<log>a&amp;b</log>");
    change("<in>", "<in new=\"x\">");
    EXPECT_EQ(bytesOf(folder.file("c.xml")), edited);
    EXPECT_PRED2(contains, run(folder, "edit_config c.xml 'a b' x"), "ended with 1");
    EXPECT_PRED2(contains, run(folder, "edit_config none.xml a b"), "none.xml:0:0: no such file");
    EXPECT_PRED2(contains, run(folder, "edit_config"), "ended with 2");
}

TEST(Examples, ReadAFeed) {
    const ScratchFolder folder;
    folder.write(
        "f.xml",
        "<rss version='2.0' xmlns:by='http://purl.org/dc/elements/1.1/' xmlns:x='urn:x'><channel>"
        "<title>Nights</title><item><title>M 42</title><by:creator>Ana &amp; Jörg</by:creator>"
        "<x:creator>nobody</x:creator><enclosure url='m42.png' length='20480'/>"
        "<description>A <![CDATA[<b>clear</b>]]> sky</description></item>"
        "<item><title>Clouds</title><enclosure url='c.png' length='?'/></item></channel></rss>");
    EXPECT_EQ(run(folder, "read_feed f.xml"), "Nights\n\nM 42\nby Ana & Jörg\nm42.png (20 KiB)\n"
                                              "A <b>clear</b> sky\n\nClouds\nc.png (0 KiB)\n\n");
}

TEST(Examples, MergeFiles) {
    const ScratchFolder folder;
    folder.write(
        "0.xml",
        "<book><contact id='1'><n>a</n></contact>\n<contact id='2'/><contact/><other/></book>");
    folder.write("1.xml", "<book><contact/><contact id='3'><n>J\u00f6rg</n></contact><contact "
                          "id='1'>b</contact></book>");
    EXPECT_EQ(run(folder, "merge_files merged.xml 0.xml 1.xml"), "");
    EXPECT_EQ(bytesOf(folder.file("merged.xml")),
              declaration +
                  "<contacts>\n  <contact id=\"1\">b</contact>\n  <contact id=\"2\"/>\n  "
                  "<contact/>\n  <contact/>\n"
                  "  <contact id=\"3\">\n    <n>J\u00f6rg</n>\n  </contact>\n</contacts>\n");
    EXPECT_PRED2(contains, run(folder, "merge_files new.xml 0.xml none.xml"), "ended with 1");
    EXPECT_FALSE(std::filesystem::exists(folder.file("new.xml")));
}

TEST(Examples, TurnTablesIntoXmlAndBack) {
    const ScratchFolder folder;
    const std::string csv =
        "Title,\"Price (EUR)\"\nMoby-Dick,9.90\n\"a, \"\"b\"\"\nc\",\nmore,1,2\n";
    const std::string xml = run(folder, "csv_xml", csv);
    EXPECT_EQ(xml, declaration + "<table>\n <row>\n  <cell column=\"Title\">Moby-Dick</cell>\n"
                                 "  <cell column=\"Price (EUR)\">9.90</cell>\n </row>\n <row>\n"
                                 "  <cell column=\"Title\">a, \"b\"\nc</cell>\n  <cell "
                                 "column=\"Price (EUR)\"/>\n </row>\n"
                                 " <row>\n  <cell column=\"Title\">more</cell>\n  <cell "
                                 "column=\"Price (EUR)\">1</cell>\n"
                                 " </row>\n</table>\n");
    folder.write("t.xml", xml);
    EXPECT_EQ(run(folder, "csv_xml t.xml"), "\"Title\",\"Price (EUR)\"\n\"Moby-Dick\",\"9.90\"\n"
                                            "\"a, \"\"b\"\"\nc\",\"\"\n\"more\",\"1\"\n");
    EXPECT_EQ(run(folder, "csv_xml", "a,b\n\x01,2\n").find("XML has no such character: \x01\n"),
              run(folder, "csv_xml", "a,b\n,2\n").size());
}

TEST(Examples, PrintTheTextOfAPage) {
    if (areRemoteRead)
        GTEST_SKIP() << "the page's document type is on the network";
    const ScratchFolder folder;
    folder.write(
        "p.html",
        "<!DOCTYPE html PUBLIC '-//W3C//DTD XHTML 1.0 Strict//EN' "
        "'http://www.w3.org/xhtml1-strict.dtd'>\n<html><head><title>The\n night</title><style>p "
        "{}</style></head>\n"
        "<body><script>var a;</script><h1>Clear<br/>sky</h1><p>Hello <b>wo</b>rld,\n\t and "
        "<![CDATA[<more>]]>.</p><ul><li>one</li><li><p>two</p></li></ul> tail <!-- no "
        "--></body></html>");
    EXPECT_EQ(run(folder, "page_text p.html"),
              "The night\nClear\nsky\nHello world, and <more>.\none\ntwo\ntail\n");
}

TEST(Examples, FindAndSort) {
    const ScratchFolder folder;
    folder.write(
        "b.xml",
        "<books><!-- all --><book author='x' price='10'>A</book><book author='y'/>\n<book "
        "author='x'>B</book>"
        "<book author='x' price='9.5'>C</book><book/><book author='x' price='10'>D</book></books>");
    EXPECT_EQ(run(folder, "find_sort b.xml x"),
              declaration + "<books>\n  <!-- all -->\n  <book author=\"x\">B</book>\n"
                            "  <book author=\"x\" price=\"9.5\">C</book>\n  <book author=\"x\" "
                            "price=\"10\">A</book>\n"
                            "  <book author=\"x\" price=\"10\">D</book>\n</books>\n");
    EXPECT_EQ(run(folder, "find_sort b.xml"),
              declaration + "<books>\n  <!-- all -->\n  <book/>\n</books>\n");
    EXPECT_EQ(run(folder, "find_sort none.xml x").find("none.xml"), 0U);
}

TEST(Examples, PrintPrettily) {
    const ScratchFolder folder;
    folder.write("p.xml", "<a><b><c/>  <d>text <e/></d></b>\n\n<!-- f --></a>");
    const std::string pretty =
        declaration + "<a>\n  <b>\n    <c/>\n    <d>text <e/></d>\n  </b>\n  <!-- f -->\n</a>\n";
    EXPECT_EQ(run(folder, "pretty_print p.xml"), pretty);
    folder.write("p.xml", pretty);
    EXPECT_EQ(run(folder, "pretty_print p.xml"), pretty);
    EXPECT_EQ(run(folder, "pretty_print " QRNDOM_SAMPLE).find(declaration), 0U);
    EXPECT_PRED2(contains, run(folder, "pretty_print none.xml"), "none.xml");
}

TEST(Examples, AnswerMessages) {
    const ScratchFolder folder;
    std::string messages = "<order id='a'>\n\n";
    for (const std::string id : {"1", "2", "3", "4"})
        messages += "<order id='" + id + "'><item cents='150' pieces='" + id +
                    "'/><item cents='5'/></order>\n";
    EXPECT_EQ(
        run(folder, "message_loop", messages),
        "<answer>input ended before all started tags were ended; last tag started is "
        "'order'</answer>\n"
        "<answer>this is not XML: a document begins with a declaration or an element</answer>\n"
        "<answer cents=\"155\" order=\"1\"/>\n<answer cents=\"305\" order=\"2\"/>\n"
        "<answer cents=\"455\" order=\"3\"/>\n<answer cents=\"605\" order=\"4\"/>\n" +
            declaration +
            "<journal><order id=\"2\"><item cents=\"150\" pieces=\"2\"/><item cents=\"5\"/></order>"
            "<order id=\"3\"><item cents=\"150\" pieces=\"3\"/><item cents=\"5\"/></order>"
            "<order id=\"4\"><item cents=\"150\" pieces=\"4\"/><item "
            "cents=\"5\"/></order></journal>\n");
}

} // namespace
